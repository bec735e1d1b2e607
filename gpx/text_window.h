// A text on its way to the parser. Of a long file only a part lies in memory at a time: what has been taken out
// of the text makes room for what follows in the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "util/je_allocator.h"

namespace gpx {

struct StreamCloser {
    void operator()(std::FILE* stream) const;
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// Zero-terminated. What reads from the file throws std::runtime_error when the storage fails; any of it
// std::bad_alloc and std::length_error.
class TextWindow {
 public:
    // Fits the nearer of a processor's caches.
    static constexpr std::size_t kPiece = 256 * 1024;

    explicit TextWindow(std::string_view whole);
    // Of a file that has some `expected` bytes, which is a guess: it may change meanwhile. Reads its first
    // piece.
    TextWindow(Stream stream, std::uint64_t expected, std::size_t piece = kPiece);

    char* Begin() { return m_text->data(); }
    char* End() { return m_text->data() + m_size; }  // at the terminator
    std::string_view Text() const { return {m_text->data(), m_size}; }

    // Whether nothing follows in the file, which is closed then.
    bool IsWhole() const { return m_stream == nullptr; }

    // How much to read at a time.
    std::size_t Piece() const { return m_piece; }

    // Where in the whole text a place stands, and how long that is, as a guess.
    std::uint64_t PositionOf(const char* at) const {
        return m_takenOut + static_cast<std::uint64_t>(at - m_text->data());
    }
    std::uint64_t ExpectedSize() const { return m_expected; }

    // Takes out what stands from `begin` to `end`, and reads on until `wanted` bytes follow `begin` or the text
    // is whole. Everything may lie elsewhere afterwards.
    void ReadOn(const char* begin, const char* end, std::size_t wanted);
    void ReadRest();

    // From now on the text ends at its first zero, and so does what is read of the file.
    void EndAtZero();
    // It ends here, and nothing more is read.
    void EndAt(char* end);

    // The memory, which nobody frees any more.
    const void* Release();

 private:
    using Buffer = std::basic_string<char, std::char_traits<char>, je_allocator<char>>;

    void MakeRoom(std::size_t size);
    void Fill();
    void CutAtZero(std::size_t from);

    std::unique_ptr<Buffer> m_text = std::make_unique<Buffer>();  // longer than what has been read
    std::size_t m_size = 0;
    Stream m_stream;
    std::uint64_t m_expected;
    std::uint64_t m_takenOut = 0;
    std::size_t m_piece;
    bool m_endsAtZero = false;
};

}  // namespace gpx
