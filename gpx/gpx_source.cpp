#include "gpx/gpx_source.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "gpx/gpx_text.h"
#include "platform/code_page.h"
#include "platform/file.h"

namespace {

constexpr unsigned kCodePageOfUtf16 = 936;

// A text, and the file that it is read from as it was then.
struct Source {
    std::optional<platform::FileState> file;
    gpx::TextWindow text;
};

Source Open(const std::wstring& path) {
    gpx::Stream stream(platform::_wfopen(path.c_str(), L"rb"));
    if (stream == nullptr) throw std::runtime_error("cannot open file");
    std::setvbuf(stream.get(), nullptr, _IONBF, 0);  // read in pieces, it needs no buffer between
    const auto file = platform::StateOf(stream.get());
    return {file, gpx::TextWindow(std::move(stream), file ? file->size : 0)};
}

// Whether a line feed without a carriage return stands among the first 256 bytes.
bool NeedsCarriageReturns(std::string_view text) {
    constexpr std::size_t kLookedAt = 256;
    const std::string_view start = text.substr(0, kLookedAt);
    for (std::size_t at = start.find('\n'); at != start.npos; at = start.find('\n', at + 1))
        if (at == 0 || start[at - 1] != '\r') return true;
    return false;
}

// KEPT: cut at every line feed, so empty lines vanish, and where the lines ended differently the carriage
// return that was there stays beside the new one. Pinned by GpxLineEnds.*.
std::string WithCarriageReturns(std::string_view text) {
    std::string rewritten;
    rewritten.reserve(text.size() + text.size() / 16);
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (!line.empty()) rewritten.append(line).append("\r\n");
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return rewritten;
}

// The user's file is exchanged in one step, or else left alone and read as it is: also when somebody has saved
// or deleted it since, whose doing the old text must not undo. A text that holds a zero is none whose lines
// could be cut: UTF-16 above all.
void RewriteLineEnds(const std::wstring& path, Source& source) {
    if (!source.file || !NeedsCarriageReturns(source.text.Text())) return;
    source.text.ReadRest();
    const std::string_view text = source.text.Text();
    if (text.find('\0') != text.npos) return;
    const std::string rewritten = WithCarriageReturns(text);
    if (!platform::ExchangeFileContent(path.c_str(), *source.file, rewritten)) return;
    source.text = gpx::TextWindow("");  // its memory is free before more is needed
    source.text = gpx::TextWindow(rewritten);
}

std::int32_t DetectEncoding(std::string_view text) {
    constexpr std::size_t kLookedAt = 64;
    const std::string_view mark = text.substr(0, 2);
    if (mark == "\xFF\xFE" || mark == "\xFE\xFF") return gpx::kUtf16;
    if (text.substr(0, 3) == "\xEF\xBB\xBF") return gpx::kUtf8;
    return text.substr(0, kLookedAt).find("UTF-8") == text.npos ? gpx::kAnsi : gpx::kUtf8;
}

// KEPT: the units are little-endian whatever the byte order mark says, so a big-endian document is not
// understood. Pinned by GpxEncoding.BigEndianUtf16_IsRefused.
std::wstring Utf16Units(std::string_view bytes) {
    std::wstring units(bytes.size() / 2, L'\0');
    for (std::size_t i = 0; i < units.size(); ++i)
        units[i] = static_cast<wchar_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                        static_cast<unsigned char>(bytes[2 * i + 1]) << 8);
    return units;
}

// As far as the first zero.
std::string InCodePage936(std::string_view utf16) {
    if (utf16.size() > std::numeric_limits<int>::max()) throw std::runtime_error("file too large");
    const std::wstring units = Utf16Units(utf16);
    std::string text(utf16.size(), '\0');
    platform::WideCharToMultiByte(kCodePageOfUtf16, units.data(), static_cast<int>(units.size()), text.data(),
                                  static_cast<int>(text.size()));
    text.resize(std::min(text.find('\0'), text.size()));
    return text;
}

// Open as long as it exists, and removed at the end, whatever happens.
class TemporaryFile {
 public:
    TemporaryFile() : m_pStream(platform::CreateTemporaryFile(m_strPath)) {
        if (!m_pStream) throw std::runtime_error("cannot make a temporary file");
    }
    ~TemporaryFile() {
        m_pStream.reset();
        platform::DeleteTemporaryFile(m_strPath);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    std::FILE* Get() const { return m_pStream.get(); }
    gpx::Stream TakeStream() { return std::move(m_pStream); }

 private:
    std::string m_strPath;
    gpx::Stream m_pStream;
};

gpx::TextWindow ThroughTemporaryFile(const std::string& text) {
    TemporaryFile file;
    if (std::fwrite(text.data(), 1, text.size(), file.Get()) != text.size() ||
        platform::fflush(file.Get()) != 0)
        throw std::runtime_error("cannot write the temporary file");
    std::rewind(file.Get());
    gpx::TextWindow window(file.TakeStream(), text.size());
    window.ReadRest();
    return window;
}

}  // namespace

gpx::TextWindow gpx::LoadSource(const std::wstring& path, std::int32_t& encoding) {
    encoding = kAnsi;
    Source source = Open(path);
    RewriteLineEnds(path, source);
    encoding = DetectEncoding(source.text.Text());
    if (encoding == kUtf16) {
        source.text.ReadRest();
        return ThroughTemporaryFile(InCodePage936(source.text.Text().substr(2)));
    }
    const std::wstring parsed = PathInAnsi(path);
    TextWindow window = parsed == path ? std::move(source.text) : Open(parsed).text;
    window.EndAtZero();
    return window;
}
