/// JSON for other programs: objects and lists, one value after the other.
#ifndef CONSOLE_JSON_H
#define CONSOLE_JSON_H

#include <string>
#include <string_view>

namespace console {

/// Writes one JSON value. Within an object a key goes before each value.
class Json {
  public:
    void open(char bracket) {
        separate();
        text_ += bracket;
        first_ = true;
    }
    void close(char bracket) {
        text_ += bracket;
        first_ = false;
    }
    void key(std::string_view name) {
        separate();
        quote(name);
        text_ += ": ";
        first_ = true;
    }
    void string(std::string_view value) {
        separate();
        quote(value);
    }
    /// A number, or null, true, false.
    void plain(std::string_view value) {
        separate();
        text_ += value;
    }
    const std::string& text() const { return text_; }

  private:
    void separate() {
        if (!first_) text_ += ", ";
        first_ = false;
    }
    void quote(std::string_view value) {
        constexpr char kDigits[] = "0123456789abcdef";
        text_ += '"';
        for (const char unit : value) {
            if (unit == '"' || unit == '\\') text_ += '\\';
            if (static_cast<unsigned char>(unit) < 0x20) {
                text_ += "\\u00";
                text_ += kDigits[unit >> 4];
                text_ += kDigits[unit & 15];
            } else {
                text_ += unit;
            }
        }
        text_ += '"';
    }

    std::string text_;
    bool first_ = true;
};

}  // namespace console

#endif
