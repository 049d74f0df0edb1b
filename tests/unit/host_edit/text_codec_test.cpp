// Texts of drawing files: code pages by all their names, bytes that come back, escapes.
#include <gtest/gtest.h>

#include <sstream>

#include "dxf/codec.h"

namespace {

using host::dxf::TextCodec;

TEST(TextCodecs, knows_the_code_pages_by_their_many_names) {
    const struct {
        const char* names;
        const char* bytes;
        const char16_t* text;
    } kPages[] = {
        {"ANSI_1250 ansi_1250 windows-1250 CP1250", "\xA3\xF3\x64\x9F", u"Łódź"},
        {"ANSI_1251 ansi-1251", "\xD2\xF0\xF3\xE1\xE0", u"Труба"},
        {"ANSI_1252 ASCII ISO_8859-1 8859_1 whatever", "\xD8 \xE9t\xE9", u"Ø été"},
        {"ANSI_1253", "\xD3\xF9\xEB\xDE\xED\xE1\xF2", u"Σωλήνας"},
        {"ANSI_1254", "\xDEi\xFE\xE8\xF0", u"Şişèğ"},
        {"ANSI_1255", "\xF6\xE9\xF0\xE5\xF8", u"צינור"},
        {"ANSI_1256", "\xC3\xE4\xC8\xE6\xC8", u"أنبوب"},
        {"ANSI_1257 iso8859-13", "\xC0\xE8\xEB", u"Ąčė"},
        {"ANSI_1258", "\xF4ng \xD0", u"ông Đ"},
        {"ANSI_874 dos874", "\xB7\xE8\xCD", u"ท่อ"},
        {"DOS437 dos850", "\x81 \x94", u"ü ö"},
        {"DOS866", "\x92\xE0\xE3\xA1\xA0", u"Труба"},
        {"iso8859-5", "\xC2\xE0\xE3\xD1\xD0", u"Труба"},
        {"MACINTOSH", "\x80\x8E", u"Äé"},
        {"ANSI_932 dos932 shift_jis", "\x94\x7A\x8A\xC7 \xB1\\\x83\x5C", u"配管 ｱ\\ソ"},
        {"ANSI_936 GB2312 gbk", "\xB9\xDC\xB5\xC0 \x81\x5C", u"管道 乗"},
        {"ANSI_949 KSC5601", "\xB9\xE8\xB0\xFC", u"배관"},
        {"ANSI_950 BIG5", "\xBA\xDE\xB9\x44", u"管道"},
        {"ANSI_1361 JOHAB", "\xA4\xC1\x88\xC5", u"뱨걘"},
        {"utf-8 UTF8", "\xD0\xA2\xE6\xB3\xB5", u"Т泵"},
    };
    for (const auto& page : kPages) {
        std::istringstream names(page.names);
        for (std::string name; names >> name;) {
            const TextCodec codec("AC1015", name);
            const std::u16string text = codec.decode(page.bytes);
            EXPECT_EQ(text, page.text) << name;
            std::string back;
            codec.encode(text, back);
            EXPECT_EQ(back, page.bytes) << name;
        }
    }
}

TEST(TextCodecs, every_byte_comes_back_on_every_page) {
    for (const char* name :
         {"ANSI_874",  "ANSI_932",  "ANSI_936",  "ANSI_949",  "ANSI_950",  "ANSI_1250",
          "ANSI_1251", "ANSI_1252", "ANSI_1253", "ANSI_1254", "ANSI_1255", "ANSI_1256",
          "ANSI_1257", "ANSI_1258", "JOHAB",     "DOS437",    "DOS850",    "DOS852",
          "DOS855",    "DOS857",    "DOS860",    "DOS861",    "DOS863",    "DOS864",
          "DOS865",    "DOS866",    "DOS869",    "8859_9",    "MACINTOSH"}) {
        const TextCodec codec("AC1015", name);
        for (int first = 0x80; first < 0x100; ++first) {
            for (int second = 0x20; second < 0x100; ++second) {
                if (second == '\\' || second == '^') continue;
                const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
                const std::u16string text = codec.decode(bytes);
                std::string back;
                codec.encode(text, back);
                // Some pages have a character twice; then the other bytes mean the same.
                if (back != bytes) {
                    ASSERT_EQ(codec.decode(back), text) << name << first << second;
                }
                ASSERT_EQ(back.find("\\U+"), std::string::npos) << name << " " << first << second;
            }
        }
    }
}

TEST(TextCodecs, resolves_escapes) {
    const struct {
        const char* bytes;
        const char16_t* text;
    } kTexts[] = {
        {"\\U+6CF5\\U+d83d\\U+DE00", u"泵\xD83D\xDE00"},
        {"\\M+19286 \\M+2BADE \\M+3B9E8 \\M+5B9DC", u"中 管 배 管"},
        {"\\U+6CF \\u+6CF5 \\M+69286 \\M+1FFFF \\M+1",
         u"\\U+6CF \\u+6CF5 \\M+69286 \\M+1FFFF \\M+1"},
        {"a^Jb^ c^x^", u"a\nb^c^x^"},
    };
    for (const char* version : {"AC1015", "AC1032"}) {
        const TextCodec codec(version, "ANSI_1252");
        for (const auto& row : kTexts)
            EXPECT_EQ(codec.decode(row.bytes), row.text) << row.bytes;
    }
}

}  // namespace
