#include "tests/support/nmea.h"

std::string NmeaLine(const std::string& body) {
    unsigned sum = 0;
    for (const char c : body) sum ^= static_cast<unsigned char>(c);
    const char* const digits = "0123456789ABCDEF";
    return '$' + body + '*' + digits[sum / 16] + digits[sum % 16] + "\r\n";
}
