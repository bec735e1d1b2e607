#include "gpx/plain_point.h"

#include <algorithm>
#include <string_view>

#include "gpx/gpx_names.h"
#include "util/numbers.h"

namespace {

constexpr int kDeepest = 8;  // elements within the point

constexpr bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
constexpr bool IsOfName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ':' || c == '_' ||
           c == '-' || c == '.';
}

// A point as it stands in the text. Each step takes what it expects, or fails for good.
class Cursor {
 public:
    explicit Cursor(const char* at) : m_at(at) {}

    const char* At() const { return m_at; }
    bool TakesNumber(double& value) {
        const char* const end = numbers::ReadPlainReal(m_at, value);
        if (end == nullptr) return false;
        m_at = end;
        return true;
    }
    bool Takes(char c) {
        if (*m_at != c) return false;
        ++m_at;
        return true;
    }
    bool Takes(std::string_view expected) {
        const char* at = m_at;
        for (const char c : expected)
            if (*at++ != c) return false;
        m_at = at;
        return true;
    }
    void SkipBlanks() {
        while (IsBlank(*m_at)) ++m_at;
    }
    std::string_view TakeName() {
        const char* const begin = m_at;
        while (IsOfName(*m_at)) ++m_at;
        return {begin, m_at};
    }
    std::string_view TakeText() {
        const char* const begin = m_at;
        while (*m_at != '<' && *m_at != '&' && *m_at != '\0') ++m_at;
        return {begin, m_at};
    }

 private:
    const char* m_at;
};

struct Values {
    double latitude = 0.0;
    double longitude = 0.0;
    double elevation = 0.0;
    std::string_view time;
    bool hasLatitude = false;
    bool hasLongitude = false;
    bool hasElevation = false;
    bool hasTime = false;
};

bool TakesQuotedNumber(Cursor& cursor, double& value) {
    const char quote = *cursor.At();
    if (quote != '"' && quote != '\'') return false;
    return cursor.Takes(quote) && cursor.TakesNumber(value) && cursor.Takes(quote);
}

// lat or lon, whichever stands here and was not taken before.
bool TakesAttribute(Cursor& cursor, Values& values) {
    const bool isLatitude = cursor.Takes("lat=");
    if (!isLatitude && !cursor.Takes("lon=")) return false;
    bool& isTaken = isLatitude ? values.hasLatitude : values.hasLongitude;
    if (isTaken) return false;
    isTaken = true;
    return TakesQuotedNumber(cursor, isLatitude ? values.latitude : values.longitude);
}

bool TakesAttributes(Cursor& cursor, Values& values) {
    for (int i = 0; i < 2; ++i) {
        if (!IsBlank(*cursor.At())) return false;
        cursor.SkipBlanks();
        if (!TakesAttribute(cursor, values)) return false;
    }
    cursor.SkipBlanks();
    return true;
}

bool TakesEndTag(Cursor& cursor, std::string_view name) {
    return cursor.Takes("</") && cursor.Takes(name) && cursor.Takes('>');
}

// What stands between the tags of an element: its text, or the elements in it.
bool TakesContent(Cursor& cursor, int depth) {
    cursor.TakeText();
    while (*cursor.At() == '<' && cursor.At()[1] != '/') {
        if (depth == kDeepest) return false;
        cursor.Takes('<');
        const std::string_view name = cursor.TakeName();
        if (name.empty() || !cursor.Takes('>') || !TakesContent(cursor, depth + 1) ||
            !TakesEndTag(cursor, name))
            return false;
        cursor.TakeText();
    }
    return true;
}

bool TakesElevation(Cursor& cursor, Values& values) {
    values.hasElevation = true;
    return cursor.TakesNumber(values.elevation);
}

bool TakesTime(Cursor& cursor, Values& values) {
    values.hasTime = true;
    values.time = cursor.TakeText();
    return !values.time.empty() && values.time.front() >= '0' && values.time.front() <= '9';
}

// Behind its <.
bool TakesElement(Cursor& cursor, Values& values) {
    const std::string_view name = cursor.TakeName();
    if (name.empty() || !cursor.Takes('>')) return false;
    bool isTaken = false;
    if (name == gpx::kElevation && !values.hasElevation)
        isTaken = TakesElevation(cursor, values);
    else if (name == gpx::kTime && !values.hasTime)
        isTaken = TakesTime(cursor, values);
    else
        isTaken = TakesContent(cursor, 1);
    return isTaken && TakesEndTag(cursor, name);
}

bool TakesPoint(Cursor& cursor, Values& values) {
    if (!cursor.Takes("<trkpt") || !TakesAttributes(cursor, values)) return false;
    if (cursor.Takes("/>")) return true;
    if (!cursor.Takes('>')) return false;
    for (;;) {
        cursor.SkipBlanks();
        if (!cursor.Takes('<')) return false;
        if (cursor.Takes('/')) return cursor.Takes("trkpt>");
        if (!TakesElement(cursor, values)) return false;
    }
}

constexpr bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::size_t gpx::PlainPointReader::Read(const char* begin, TckPt& point) {
    Cursor cursor(begin);
    Values values;
    if (!TakesPoint(cursor, values)) return 0;
    point.dLatitude = values.latitude;
    point.dLongitude = values.longitude;
    if (values.hasElevation) point.dAltitude = values.elevation;
    if (values.hasTime) point.lTime = m_times.Read(values.time);
    return static_cast<std::size_t>(cursor.At() - begin);
}

std::size_t gpx::PlainPointReader::Measure(const char* begin, const char* textEnd) {
    if (m_modelSize != 0 && static_cast<std::size_t>(textEnd - begin) >= m_modelSize && FitsModel(begin))
        return m_modelSize;
    Cursor cursor(begin);
    Values values;
    if (!TakesPoint(cursor, values)) return 0;
    const auto size = static_cast<std::size_t>(cursor.At() - begin);
    MakeModel(begin, size);
    return size;
}

// Whole blocks, and one more over the last bytes, without a branch: most points fit. Compilers turn a loop over
// a block into a few instructions.
bool gpx::PlainPointReader::FitsModel(const char* begin) const {
    Block differences{};
    const auto look = [&](std::size_t at) {
        for (std::size_t i = 0; i < kBlock; ++i) {
            const unsigned char span = m_span[at + i];
            const auto above = static_cast<unsigned char>(begin[at + i] - m_lowest[at + i]);
            differences[i] |= static_cast<unsigned char>(std::max(above, span) ^ span);
        }
    };
    for (std::size_t at = 0; at + kBlock <= m_modelSize; at += kBlock) look(at);
    look(m_modelSize - kBlock);
    return differences == Block{};
}

void gpx::PlainPointReader::MakeModel(const char* begin, std::size_t size) {
    m_modelSize = size >= kBlock && size <= m_lowest.size() ? size : 0;
    for (std::size_t i = 0; i < m_modelSize; ++i) {
        const auto byte = static_cast<unsigned char>(begin[i]);
        m_lowest[i] = IsDigit(byte) ? '0' : byte;
        m_span[i] = IsDigit(byte) ? 9 : 0;
    }
}
