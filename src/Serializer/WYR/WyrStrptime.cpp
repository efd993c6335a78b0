#include "Serializer/WYR/WyrStrptime.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "Base/Container/AsciiText.h"
#include "Serializer/WYR/WyrSpace.h"

namespace Ubrix {

namespace {

constexpr char const* kDays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday",
                                 "Sun",    "Mon",    "Tue",     "Wed",       "Thu",      "Fri",    "Sat"};
constexpr char const* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December",
                                   "Jan",     "Feb",      "Mar",       "Apr",     "May",      "Jun",
                                   "Jul",     "Aug",      "Sep",       "Oct",     "Nov",      "Dec"};
constexpr char const* kHalves[] = {"am", "pm"};

int Clamped(long long value) {
    return static_cast<int>(std::min<long long>(std::max<long long>(value, INT_MIN), INT_MAX));
}

// The weekday of January 1st, 0 for Sunday.
int FirstWeekday(int tmYear) {
    long long const year = tmYear + 1900LL;
    if (year <= 1970) {
        return 4;
    }
    int day = 4;
    // 400 years are whole weeks, and the same leap years again.
    long long const end = 1970 + (year - 1970) % 400;
    for (long long y = 1970; y < end; ++y) {
        bool const leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
        day += leap ? 366 : 365;
    }
    return day % 7;
}

class Scan {
public:
    Scan(char const* input, std::tm* out) : _input(input), _out(out) {}

    char const* input() const { return _input; }

    bool run(char const* format) {
        while (*format != '\0') {
            if (IsWyrSpace(*format)) {
                skipSpace();
                ++format;
                continue;
            }
            if (*format != '%' || format[1] == '\0') {
                if (!literal(*format)) {
                    return false;
                }
                ++format;
                continue;
            }
            ++format;
            if (*format == 'E' || *format == 'O') {
                ++format;
            }
            if (*format == '\0' || !convert(*format)) {
                return false;
            }
            ++format;
        }
        return true;
    }

private:
    void skipSpace() {
        while (IsWyrSpace(*_input)) {
            ++_input;
        }
    }

    bool literal(char c) {
        if (*_input != c) {
            return false;
        }
        ++_input;
        return true;
    }

    bool number(int* value) {
        char* end = nullptr;
        long const read = std::strtol(_input, &end, 10);
        if (end == _input) {
            return false;
        }
        _input = end;
        *value = Clamped(read);
        return true;
    }

    // As number, less `offset`.
    bool number(int* value, long long offset) {
        int read = 0;
        if (!number(&read)) {
            return false;
        }
        *value = Clamped(read - offset);
        return true;
    }

    // The place of the first name that the input begins with.
    template <int kCount>
    bool name(char const* const (&names)[kCount], int* place) {
        for (*place = 0; *place < kCount; ++*place) {
            char const* text = _input;
            char const* candidate = names[*place];
            while (*candidate != '\0' && LowerAscii(*text) == LowerAscii(*candidate)) {
                ++text;
                ++candidate;
            }
            if (*candidate == '\0') {
                _input = text;
                return true;
            }
        }
        return false;
    }

    bool week(char letter) {
        int read = 0;
        if (!number(&read)) {
            return false;
        }
        int const first = FirstWeekday(_out->tm_year);
        int const fromMonday = (first + 6) % 7;
        long long days = 0;
        int weekday = 0;
        if (letter == 'U') {
            days = read * 7LL + _out->tm_wday - first;
            weekday = first;
        } else if (letter == 'W') {
            days = read * 7LL + (_out->tm_wday + 6LL) % 7 - fromMonday;
            weekday = (fromMonday + 1) % 7;
        } else {
            days = (read - 1LL) * 7 + (fromMonday < 4 ? 7 : 0) + _out->tm_wday - fromMonday;
            weekday = fromMonday;
        }
        _out->tm_yday = days < 0 ? 0 : Clamped(days);
        if (days < 0) {
            _out->tm_wday = weekday;
        }
        return true;
    }

    bool century() {
        int read = 0;
        if (!number(&read)) {
            return false;
        }
        _out->tm_year = Clamped(read * 100LL - 1900);
        return true;
    }

    bool shortYear() {
        int read = 0;
        if (!number(&read)) {
            return false;
        }
        _out->tm_year = read < 70 ? read + 100 : read;
        return true;
    }

    bool halfDay() {
        int half = 0;
        if (!name(kHalves, &half)) {
            return false;
        }
        _out->tm_hour = Clamped(_out->tm_hour + 12LL * half);
        return true;
    }

    bool hourOfHalfDay() {
        if (!number(&_out->tm_hour)) {
            return false;
        }
        _out->tm_hour = _out->tm_hour == 12 ? 0 : _out->tm_hour;
        return true;
    }

    template <int kCount>
    bool nameOf(char const* const (&names)[kCount], int* field) {
        int place = 0;
        if (!name(names, &place)) {
            return false;
        }
        *field = place % (kCount / 2);
        return true;
    }

    bool convert(char letter) {
        switch (letter) {
            case 'A':
            case 'a':
                return nameOf(kDays, &_out->tm_wday);
            case 'B':
            case 'b':
            case 'h':
                return nameOf(kMonths, &_out->tm_mon);
            case 'C':
                return century();
            case 'I':
            case 'l':
                return hourOfHalfDay();
            case 'p':
                return halfDay();
            case 'U':
            case 'V':
            case 'W':
                return week(letter);
            case 'y':
                return shortYear();
            case 'n':
                return literal('\n');
            case 't':
                return literal('\t');
            case 'Z':
                return true;
            case '%':
                return literal('%');
            default:
                return convertNumber(letter);
        }
    }

    bool convertNumber(char letter) {
        switch (letter) {
            case 'd':
            case 'e':
                return number(&_out->tm_mday);
            case 'H':
            case 'k':
                return number(&_out->tm_hour);
            case 'j':
                return number(&_out->tm_yday, 1);
            case 'M':
                return number(&_out->tm_min);
            case 'm':
                return number(&_out->tm_mon, 1);
            case 'S':
                return number(&_out->tm_sec);
            case 'u':
                return number(&_out->tm_wday, 1);
            case 'w':
                return number(&_out->tm_wday);
            case 'Y':
                return number(&_out->tm_year, 1900);
            default:
                return convertComposite(letter);
        }
    }

    bool convertComposite(char letter) {
        switch (letter) {
            case 'c':
                return run("%a %b %e %H:%M:%S %Y");
            case 'D':
                return run("%m/%d/%y");
            case 'R':
                return run("%H:%M");
            case 'r':
                return run("%I:%M:%S %p");
            case 'T':
            case 'X':
                return run("%H:%M:%S");
            case 'x':
                return run("%Y:%m:%d");
            default:
                return literal('%') || literal(letter);
        }
    }

    char const* _input;
    std::tm* _out;
};

}  // namespace

char const* wyrStrptime(char const* input, char const* format, std::tm* out) {
    Scan scan(input, out);
    return scan.run(format) ? scan.input() : nullptr;
}

}  // namespace Ubrix
