/// The file of settings. It is read anew for each question: they are rare, and other runs write it.
#include "base/settings.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <system_error>

#include "kz_tls21an/text.h"

namespace host {
namespace {

namespace fs = std::filesystem;

struct Setting {
    std::u16string section, name, text;
};

/// By section and name in upper case, so that a section's names stand together.
using Settings = std::map<std::pair<std::u16string, std::u16string>, Setting>;

fs::path settingsFile() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return fs::path(value == nullptr ? "" : value);
    };
    if (!variable("KZ_SETTINGS").empty()) return variable("KZ_SETTINGS");
    const fs::path folder = variable("XDG_CONFIG_HOME");
    if (!folder.empty()) return folder / "kz" / "settings";
    const fs::path home = variable("HOME");
    return home.empty() ? home : home / ".config" / "kz" / "settings";
}

/// Parts are separated by one backslash, and none stands at the end.
std::u16string plainSection(std::u16string_view section) {
    std::u16string plain;
    for (const char16_t unit : section) {
        const bool separator = unit == u'/' || unit == u'\\';
        if (!separator) plain += unit;
        if (separator && !plain.empty() && plain.back() != u'\\') plain += u'\\';
    }
    if (plain.ends_with(u'\\')) plain.pop_back();
    return plain;
}

std::string escaped(std::u16string_view text) {
    std::string out;
    for (const char c : kz::toUtf8(text)) {
        if (c == '\\') out += "\\\\";
        if (c == '\t') out += "\\t";
        if (c == '\n') out += "\\n";
        if (c != '\\' && c != '\t' && c != '\n') out += c;
    }
    return out;
}

std::vector<std::u16string> parts(const std::string& line) {
    std::vector<std::string> items(1);
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\t') {
            items.emplace_back();
        } else if (line[i] == '\\' && i + 1 < line.size()) {
            const char c = line[++i];
            items.back() += c == 't' ? '\t' : c == 'n' ? '\n' : c;
        } else {
            items.back() += line[i];
        }
    }
    std::vector<std::u16string> texts;
    texts.reserve(items.size());
    for (const std::string& item : items)
        texts.push_back(kz::toUtf16(item));
    return texts;
}

std::pair<std::u16string, std::u16string> keyOf(std::u16string_view section,
                                                std::u16string_view name) {
    return {kz::toUpper(section), kz::toUpper(name)};
}

Settings readAll() {
    Settings settings;
    std::ifstream file(settingsFile());
    for (std::string line; std::getline(file, line);) {
        std::vector<std::u16string> items = parts(line);
        if (items.size() != 3) continue;
        settings[keyOf(items[0], items[1])] = {items[0], items[1], items[2]};
    }
    return settings;
}

/// Through a file that takes the old one's place, so that no run finds half of it.
bool writeAll(const Settings& settings) {
    const fs::path path = settingsFile();
    if (path.empty()) return false;
    std::error_code error;
    if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
    const fs::path passing = path.string() + "." + std::to_string(::getpid());
    std::ofstream file(passing);
    for (const auto& [key, setting] : settings) {
        file << escaped(setting.section) << '\t' << escaped(setting.name) << '\t'
             << escaped(setting.text) << '\n';
    }
    file.close();
    if (file) fs::rename(passing, path, error);
    if (!file || error) {
        std::error_code ignored;
        fs::remove(passing, ignored);
        return false;
    }
    return true;
}

}  // namespace

std::optional<std::u16string> readSetting(std::u16string_view section, std::u16string_view name) {
    const Settings settings = readAll();
    const auto found = settings.find(keyOf(plainSection(section), name));
    if (found == settings.end()) return std::nullopt;
    return found->second.text;
}

bool writeSetting(std::u16string_view section, std::u16string_view name, std::u16string_view text) {
    Settings settings = readAll();
    const std::u16string plain = plainSection(section);
    Setting& setting = settings[keyOf(plain, name)];
    if (setting.section.empty()) {
        setting.section = plain;
        setting.name = name;
    }
    setting.text = text;
    return writeAll(settings);
}

bool removeSetting(std::u16string_view section, std::optional<std::u16string_view> name) {
    Settings settings = readAll();
    const std::u16string wanted = kz::toUpper(plainSection(section));
    const size_t removed = std::erase_if(settings, [&](const Settings::value_type& entry) {
        const auto& [of, called] = entry.first;
        if (name) return of == wanted && called == kz::toUpper(*name);
        return of == wanted || of.starts_with(wanted + u'\\');
    });
    return removed != 0 && writeAll(settings);
}

std::vector<std::u16string> settingNames(std::u16string_view section) {
    const std::u16string wanted = kz::toUpper(plainSection(section));
    std::vector<std::u16string> names;
    for (const auto& [key, setting] : readAll()) {
        if (key.first == wanted) names.push_back(setting.name);
    }
    return names;
}

std::vector<std::u16string> settingSections(std::u16string_view section) {
    const std::u16string above = kz::toUpper(plainSection(section)) + u'\\';
    std::vector<std::u16string> sections;
    for (const auto& [key, setting] : readAll()) {
        if (!key.first.starts_with(above)) continue;
        const std::u16string rest = setting.section.substr(above.size());
        const std::u16string first = rest.substr(0, rest.find(u'\\'));
        if (sections.empty() || kz::toUpper(sections.back()) != kz::toUpper(first)) {
            sections.push_back(first);
        }
    }
    return sections;
}

}  // namespace host
