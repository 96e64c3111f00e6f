#include "platform/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pv {
namespace {

using namespace std::string_literals;
using platform::parse_settings;
using platform::SettingsContent;
using platform::SettingsMistake;
using platform::SettingValue;
using platform::with_setting;
using testing::ElementsAre;

constexpr char kKey[] = R"(SOFTWARE\Post Vane)";
constexpr char kSection[] = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane]\n";

// ASCII as the registry editor saves it.
std::string utf16(std::string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char c : text) bytes.append({c, '\0'});
  return bytes;
}

std::string shown(const SettingValue* value) {
  if (value == nullptr) return "none";
  if (const auto* number = std::get_if<std::uint32_t>(value)) return "#" + std::to_string(*number);
  return "'" + std::get<std::string>(*value) + "'";
}

struct ValueCase {
  const char* what;
  std::string lines;  // below the key
  std::string value;  // of "n", as shown() gives it
};

const ValueCase kValues[] = {
    {"a text", "\"n\"=\"/srv/mail\"\n", "'/srv/mail'"},
    {"escapes", R"("n"="a\\b\"c")", R"('a\b"c')"},
    {"a backslash that escapes nothing", R"("n"="C:\temp")", R"('C:\temp')"},
    {"an escaped backslash before the quote", R"("n"="C:\\")", R"('C:\')"},
    {"an escape in the name", "\"n\"=\"1\"\n\"n\\\"\"=\"2\"\n", "'1'"},
    {"a number of eight digits", "\"n\"=dword:fFFFffff\n", "#4294967295"},
    {"a number of one digit", "\"n\"=DWORD:a\n", "#10"},
    {"a number of nine digits", "\"n\"=dword:000000001\n", "none"},
    {"a number without digits", "\"n\"=dword:\n", "none"},
    {"a number that goes on in letters", "\"n\"=dword:1g\n", "none"},
    {"blanks and a comment", "  \"n\" = dword:2 ; two\n", "#2"},
    {"something behind the value", "\"n\"=\"a\"b\n", "none"},
    {"a text in UTF-16", "\"n\"=hex(1):e9,00,3d,d8,0a,de,00,00\n", "'\u00e9\U0001F60A'"},
    {"an unpaired surrogate", "\"n\"=hex(2):3d,d8,41,00\n", "'\uFFFDA'"},
    {"half a character at the end", "\"n\"=hex(2):41,00,42\n", "'AB'"},
    {"continued lines", "\"n\"=hex(2):41,00,\\\r\n  42,00,\\\r\n  00,00\r\n", "'AB'"},
    {"the first of a list of texts", "\"n\"=hex(7):41,00,00,00,42,00,00,00,00,00\n", "'A'"},
    {"no bytes at all", "\"n\"=hex(2):\n", "''"},
    {"a number in bytes", "\"n\"=hex(4):01,02,00,00\n", "#513"},
    {"four untyped bytes", "\"n\"=hex:ff,0,0,80\n", "#2147483903"},
    {"a number of three bytes", "\"n\"=hex(4):01,02,00\n", "none"},
    {"a list of bytes broken off", "\"n\"=hex(2):41,00,\\", "none"},
    {"no colon", "\"n\"=hex(2)41,00\n", "none"},
    {"bytes of a text in version 4", "REGEDIT4\n\"n\"=hex(2):41,42,00\n", "'AB'"},
    {"the last one counts", "\"n\"=\"a\"\n\"N\"=\"b\"\n", "'b'"},
    {"removed", "\"n\"=\"a\"\n\"N\"=-\n", "none"},
    {"its key removed", "\"n\"=\"a\"\n[-HKEY_LOCAL_MACHINE\\software]\n", "none"},
    {"another key removed", "\"n\"=\"a\"\n[-HKEY_LOCAL_MACHINE\\SOFT]\n", "'a'"},
    {"set below the removal of the key", "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane]\n\"n\"=\"a\"\n", "none"},
    {"another root", "[HKEY_CURRENT_USER\\SOFTWARE\\Post Vane]\n\"n\"=\"a\"\n", "none"},
    {"the key again, in its 32-bit spelling",
     "[X]\n[HKEY_LOCAL_MACHINE\\software\\wow6432node\\post vane]\n\"n\"=\"a\"", "'a'"},
    {"a comment behind the key",
     "[HKEY_LOCAL_MACHINE\\X]\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane] ; [x]\n\"n\"=\"a\"", "'a'"},
    {"no closing quote", "\"n\"=\"a\n", "none"},
    {"a NUL byte", "\"n\"=\"a\0b\"\n"s, "none"},
    {"a byte that is no UTF-8", "\"n\"=\"\xE9\"\n", "'\xE9'"},
};

TEST(SettingsFile, ReadsValues) {
  for (const ValueCase& c : kValues) {
    const SettingsContent content = parse_settings(kSection + c.lines);
    EXPECT_EQ(shown(content.find(kKey, "N")), c.value) << c.what;
  }
}

TEST(SettingsFile, ReadsAnExportAsItIs) {
  const SettingsContent content = parse_settings(
      utf16("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Post Vane]\r\n"
            "@=\"default\"\r\n\"Path\"=hex(2):2f,00,\\\r\n  73,00,00,00\r\n\r\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Post Vane\\A]\r\n\"b\"=dword:00000001\r\n\"a\"=-\r\n\r\n"));
  EXPECT_THAT(content.key_order, ElementsAre(kKey, R"(SOFTWARE\Post Vane\A)"));
  EXPECT_EQ(shown(content.find(R"(Software\Wow6432Node\post vane\)", "")), "'default'");
  EXPECT_EQ(shown(content.find(kKey, "path")), "'/s'");
  EXPECT_THAT(content.find_key(R"(SOFTWARE\Post Vane\A)")->names, ElementsAre("b"));
  EXPECT_EQ(content.find_key(R"(SOFTWARE\Post)"), nullptr);
}

TEST(SettingsFile, FindsAKeyOfAnyLength) {
  for (const std::size_t size : {200U, 255U, 256U, 257U, 70'000U}) {
    const std::string path = "SOFTWARE\\" + std::string(size, 'k');
    const SettingsContent content = parse_settings(with_setting("", path, "n", 7U));
    EXPECT_EQ(shown(content.find("software\\wow6432node\\" + std::string(size, 'K'), "n")), "#7") << size;
  }
}

TEST(SettingsFile, NamesWhatItSkips) {
  std::vector<SettingsMistake> mistakes;
  parse_settings(
      "\"n\"=\"a\"\r\nlots\n[HKLM\\x]\n\"n\"=1\n[HKEY_LOCAL_MACHINE\n[HKEY_LOCAL_MACHINE\\x]\n\"n\"=hex:0,\\\n1\n\"n\n"
      "\"n\" 1\n\"n\"=lots\n\"n\"=dword:lots\n",
      &mistakes);
  std::vector<std::string> lines;
  lines.reserve(mistakes.size());
  for (const SettingsMistake& mistake : mistakes) lines.push_back(std::to_string(mistake.line) + ": " + mistake.what);
  EXPECT_THAT(
      lines,
      ElementsAre("1: the value stands below no key; the line is skipped",
                  "2: \"lots\" is no [key], no \"name\"=value and no ; comment; the line is skipped",
                  "3: the key \"HKLM\\x\" does not begin with HKEY_LOCAL_MACHINE; the values below it are skipped",
                  "5: no ] behind the key; the values below it are skipped",
                  "9: no quote behind the name; the line is skipped", "10: no = behind the name; the line is skipped",
                  "11: \"lots\" is no value: a text in quotes, dword:, hex: or - is expected; the line is skipped",
                  "12: \"dword:lots\" is no number: dword: is followed by 1 to 8 hexadecimal digits; the line is "
                  "skipped"));
}

// A file that broke off, or something else in its place, loses what cannot be read and nothing more.
TEST(SettingsFile, SurvivesAnyBytes) {
  const std::string long_line(1 << 20, 'x');
  const std::string whole = kSection + "\"n\"=hex(1):41,00,\\\n00,00 ; c\n\"m\"=\"1\"\n"s;
  for (const std::string& file : {whole, utf16(whole), "\xEF\xBB\xBF" + whole, "\xFE\xFF" + whole,
                                  std::string(1000, '\0'), kSection + "\""s + long_line, "[" + long_line}) {
    const std::size_t step = file.size() < 1000 ? 1 : file.size() / 3;
    for (std::size_t size = 0; size <= file.size(); size += step) {
      const std::string_view bytes = std::string_view(file).substr(0, size);
      const std::string changed = with_setting(bytes, kKey, "added", 5U);
      if (file.starts_with("\xFE\xFF") && size > 1) {
        EXPECT_EQ(changed, bytes) << "a file that cannot be read is left alone";
      } else {
        EXPECT_EQ(shown(parse_settings(changed).find(kKey, "added")), "#5") << size;
      }
    }
  }
}

struct EditCase {
  const char* what;
  std::string before, name;
  SettingValue value;
  std::string after;
};

const EditCase kEdits[] = {
    {"an empty file", "", "n", 1U,
     "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane]\n\"n\"=dword:00000001\n"},
    {"a new key in CR LF", "; c\r\n", "n", 1U,
     "; c\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane]\r\n\"n\"=dword:00000001\r\n"},
    {"no second blank line", "; c\n\n", "n", 1U,
     "; c\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane]\n\"n\"=dword:00000001\n"},
    {"no last line end, a new key", "; c", "", "d"s, "; c\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane]\n@=\"d\""},
    {"no last line end, a new value", kSection + "\"a\"=\"1\""s, "n", 1U,
     kSection + "\"a\"=\"1\"\n\"n\"=dword:00000001"s},
    {"in place, with spelling, blanks and comment", kSection + " \"N\" = dword:1 ; one\r\n\"a\"=-\n"s, "n", 0xABCDEFU,
     kSection + " \"N\" = dword:00abcdef ; one\r\n\"a\"=-\n"s},
    {"in place in a last line without end", kSection + "\"n\"=\"a\""s, "n", "b"s, kSection + "\"n\"=\"b\""s},
    {"a continued value as a whole", kSection + "\"n\"=hex(2):41,00,\\\n  00,00 ; c\n; d\n"s, "n", "b"s,
     kSection + "\"n\"=\"b\" ; c\n; d\n"s},
    {"the last one, which counts", kSection + "\"n\"=\"a\"\n\"n\"=\"b\"\n"s, "n", "c"s,
     kSection + "\"n\"=\"a\"\n\"n\"=\"c\"\n"s},
    {"not one that is removed below", kSection + "\"n\"=\"a\"\n\"n\"=-\n"s, "n", "c"s,
     kSection + "\"n\"=\"a\"\n\"n\"=-\n\"n\"=\"c\"\n"s},
    {"not one whose key is removed below", kSection + "\"n\"=\"a\"\n[-HKEY_LOCAL_MACHINE\\SOFTWARE]\n"s, "n", "c"s,
     kSection + "\"n\"=\"a\"\n[-HKEY_LOCAL_MACHINE\\SOFTWARE]\n\n"s + kSection + "\"n\"=\"c\"\n"},
    {"behind the values, before blank lines and the next key's comment",
     kSection + "\"a\"=\"1\"\n; mine\n\n; x's\n[HKEY_LOCAL_MACHINE\\x]\n"s, "n", "c"s,
     kSection + "\"a\"=\"1\"\n; mine\n\"n\"=\"c\"\n\n; x's\n[HKEY_LOCAL_MACHINE\\x]\n"s},
    {"the 32-bit spelling of the key", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Post Vane]\n\n", "n", "c"s,
     "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Post Vane]\n\"n\"=\"c\"\n\n"},
    {"escapes", kSection, "a\\\"", "b\\\""s, kSection + R"("a\\\""="b\\\"")"s + "\n"},
    {"line ends in a text", kSection, "n", "a\n"s, kSection + "\"n\"=hex(1):61,00,0a,00,00,00\n"s},
    {"line ends in a text of version 4", "REGEDIT4\n"s + kSection, "n", "a\n"s,
     "REGEDIT4\n"s + kSection + "\"n\"=hex(1):61,0a,00\n"},
    {"line ends in a text before a part of version 4", kSection + "[A]\nREGEDIT4\n"s, "n", "a\n"s,
     kSection + "\"n\"=hex(1):61,00,0a,00,00,00\n[A]\nREGEDIT4\n"s},
    {"a NUL ends a text", kSection, "n", "a\0b"s, kSection + "\"n\"=\"a\"\n"s},
    {"there already, otherwise written", kSection + "\"n\"=hex(4):2a,0,0,0"s, "n", 42U,
     kSection + "\"n\"=hex(4):2a,0,0,0"s},
    {"a name no line can hold", kSection, "a\nb", 1U, kSection},
};

TEST(SettingsFile, ChangesOneValueAndNothingElse) {
  for (const EditCase& c : kEdits) EXPECT_EQ(with_setting(c.before, kKey, c.name, c.value), c.after) << c.what;
}

TEST(SettingsFile, KeepsEveryByteOfTheEncoding) {
  const std::string unpaired("\x3D\xD8;\0", 4);
  const std::string line_end("\r\0\n\0", 4);
  const std::string before = utf16("; ") + unpaired + line_end;
  const std::string after = with_setting(before, "A", "n", "\u00e9\U0001F60A"s);
  EXPECT_TRUE(after.starts_with(before + line_end)) << "CR LF, and the surrogate as it was";
  EXPECT_EQ(shown(parse_settings(after).find("A", "n")), "'\u00e9\U0001F60A'");
  EXPECT_EQ(with_setting(after, "a", "N", "\u00e9\U0001F60A"s), after);
  EXPECT_TRUE(with_setting("\xEF\xBB\xBF", "A", "n", 1U).starts_with("\xEF\xBB\xBFWindows Registry"));
}

}  // namespace
}  // namespace pv
