// Strangers' documents, as text and as files.
#pragma once

#include "tests/gpx/gpx_fixture.h"

inline std::string ManyPoints(std::size_t count) {
    std::string points;
    for (std::size_t i = 0; i < count; ++i)
        points += "\t\t\t<trkpt lat=\"47." + std::to_string(100000 + i % 800000) +
                  "\" lon=\"8.123456\">\r\n\t\t\t\t<ele>432.123456</ele>\r\n"
                  "\t\t\t\t<time>2014-05-01T10:20:30Z</time>\r\n\t\t\t</trkpt>\r\n";
    return DocumentOfPoints(points);
}

class GpxRobustness : public GpxTest {
 protected:
    bool IsRead(const std::string& document) {
        Imported imported;
        return Import(document, imported);
    }
    bool IsFileRead() {
        Imported imported;
        return ImportFile(L"\\Track\\a.gpx", imported);
    }
};
