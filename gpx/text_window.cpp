#include "gpx/text_window.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "platform/file.h"

void gpx::StreamCloser::operator()(std::FILE* stream) const { platform::fclose(stream); }

gpx::TextWindow::TextWindow(std::string_view whole)
    : m_size(whole.size()), m_expected(whole.size()), m_piece(kPiece) {
    m_text->assign(whole);
}

// A byte more than there should be: only what comes up short tells that the file is at its end.
gpx::TextWindow::TextWindow(Stream stream, std::uint64_t expected, std::size_t piece)
    : m_stream(std::move(stream)), m_expected(expected), m_piece(piece) {
    constexpr std::uint64_t kAtLeast = 4096;  // of a file that does not tell its size
    MakeRoom(static_cast<std::size_t>(std::min<std::uint64_t>(piece, std::max(expected + 1, kAtLeast))));
    Fill();
}

void gpx::TextWindow::ReadOn(const char* begin, const char* end, std::size_t wanted) {
    const auto at = static_cast<std::size_t>(begin - Begin());
    const auto gap = static_cast<std::size_t>(end - begin);
    if (gap != 0) std::memmove(Begin() + at, end, static_cast<std::size_t>(End() - end) + 1);
    m_size -= gap;
    m_takenOut += gap;
    MakeRoom(at + wanted);
    Fill();
}

// As much as is expected, and more only of a file that has grown.
void gpx::TextWindow::ReadRest() {
    MakeRoom(static_cast<std::size_t>(m_expected - std::min(m_expected, m_takenOut)) + 1);
    for (Fill(); !IsWhole(); Fill()) MakeRoom(std::max<std::size_t>(2 * m_size, m_piece));
}

void gpx::TextWindow::EndAtZero() {
    m_endsAtZero = true;
    CutAtZero(0);
}

void gpx::TextWindow::EndAt(char* end) {
    *end = '\0';
    m_size = static_cast<std::size_t>(end - Begin());
    m_stream.reset();
}

const void* gpx::TextWindow::Release() { return m_text.release(); }

void gpx::TextWindow::MakeRoom(std::size_t size) {
    if (m_text->size() <= size) m_text->resize(size + 1);
}

void gpx::TextWindow::Fill() {
    if (IsWhole()) return;
    const std::size_t room = m_text->size() - 1 - m_size;
    const std::size_t got = std::fread(End(), 1, room, m_stream.get());
    if (std::ferror(m_stream.get()) != 0) throw std::runtime_error("cannot read file");
    const std::size_t before = m_size;
    m_size += got;
    *End() = '\0';
    if (got < room) m_stream.reset();
    if (m_endsAtZero) CutAtZero(before);
}

void gpx::TextWindow::CutAtZero(std::size_t from) {
    const std::size_t zero = Text().find('\0', from);
    if (zero == std::string_view::npos) return;
    EndAt(Begin() + zero);
    m_expected = m_takenOut + m_size;
}
