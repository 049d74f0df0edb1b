/// kz info: what is in drawings, and what is odd about them.
#include <algorithm>
#include <charconv>
#include <memory>

#include "host/drawing_info.h"
#include "host/output.h"
#include "json.h"
#include "kz_tls21an/text.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

using host::DrawingInfo;

/// Names in a list before the rest is only counted.
constexpr size_t kShown = 8;

struct InfoOptions {
    std::vector<std::string> drawings;
    bool json = false;
    bool all = false;
    bool recover = false;
};

std::string number(uint64_t value) {
    const std::string digits = std::to_string(value);
    std::string text;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) text.push_back(',');
        text.push_back(digits[i]);
    }
    return text;
}

std::string sizeText(uint64_t bytes) {
    if (bytes < 10000) return number(bytes) + " bytes";
    const bool mega = bytes >= 10000000;
    return number(bytes / (mega ? 1000000 : 1000)) + (mega ? " MB" : " KB");
}

std::string real(double value) {
    char text[32];
    const auto [end, error] =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, 10);
    return {text, end};
}

std::string point(const double* at) {
    return real(at[0]) + "," + real(at[1]) + "," + real(at[2]);
}

// --- text ---------------------------------------------------------------------------------------

class Page {
  public:
    explicit Page(bool all) : all_(all) {}

    void line(const std::string& text) {
        host::write(host::Channel::Lisp, kz::toUtf16(text + "\n"));
    }
    /// A line with its name in front; none for an empty text.
    void entry(const std::string& name, const std::string& text) {
        if (text.empty()) return;
        std::string label = "  " + name;
        label.resize(std::max<size_t>(label.size() + 1, 16), ' ');
        line(label + text);
    }
    /// A line with a number, and names behind it.
    template <class Items, class Words>
    void list(const std::string& name, const Items& items, const Words& words) {
        if (items.empty()) return;
        std::string text = name == "sections" ? "" : number(items.size()) + ": ";
        size_t shown = 0;
        for (const auto& item : items) {
            if (!all_ && shown == kShown && items.size() > kShown + 1) break;
            text += (shown++ > 0 ? ", " : "") + words(item);
        }
        if (shown < items.size()) text += " and " + number(items.size() - shown) + " more";
        entry(name, text);
    }

  private:
    bool all_;
};

std::string wordsOf(const host::InfoCount& item) {
    return number(item.count) + " " + item.name;
}

std::string wordsOf(const host::InfoLayer& layer) {
    std::string text = layer.name + " " + number(layer.entities);
    std::string state;
    for (const auto& [is, word] : {std::pair{!layer.on, "off"}, std::pair{layer.frozen, "frozen"},
                                   std::pair{layer.locked, "locked"}}) {
        if (is) state += (state.empty() ? "" : " ") + std::string(word);
    }
    return state.empty() ? text : text + " (" + state + ")";
}

std::string wordsOf(const host::InfoBlock& block) {
    return block.name + " " + number(block.entities) +
           (block.references > 0 ? " (" + number(block.references) + " inserted)" : "");
}

std::string wordsOf(const host::InfoStyle& style) {
    return style.name + (style.font.empty() ? "" : " (" + style.font + ")");
}

std::string wordsOf(const host::InfoApplication& app) {
    return app.name + " on " + number(app.objects) + " (" + sizeText(app.bytes) + ")";
}

std::string wordsOf(const host::InfoFile& file) {
    return file.kind + " " + (file.name.empty() ? "" : file.name + " = ") + file.path +
           (file.found ? "" : " (missing)");
}

std::string wordsOf(const host::InfoObject& object) {
    return object.type + " " + object.handle + " " + sizeText(object.bytes);
}

const auto kWords = [](const auto& item) { return wordsOf(item); };

/// Line types are told when entities name them, applications when they have data.
template <class Items, class Test>
Items those(const Items& items, const Test& test) {
    Items out;
    std::copy_if(items.begin(), items.end(), std::back_inserter(out), test);
    return out;
}

void tellFile(Page& page, const DrawingInfo& info) {
    page.line(info.path);
    page.entry("version", info.release + " (" + info.version + "), " +
                              (info.binary ? "binary" : "ASCII") + " DXF, " + sizeText(info.bytes));
    page.entry("text", info.utf8 ? "UTF-8" : info.code_page);
    std::string saved = info.updated;
    if (!info.saved_by.empty()) saved += (saved.empty() ? "by " : " by ") + info.saved_by;
    page.entry("saved", saved);
    page.entry("created", info.created);
    page.entry("units", info.units);
    if (info.extents) {
        page.entry("extents", point(info.extents->data()) + " to " + point(&(*info.extents)[3]));
    }
    if (info.limits) {
        page.entry("limits", real((*info.limits)[0]) + "," + real((*info.limits)[1]) + " to " +
                                 real((*info.limits)[3]) + "," + real((*info.limits)[4]));
    }
    page.list("sections", info.sections, [](const host::InfoCount& section) {
        return section.name + " " + sizeText(section.count);
    });
}

void tell(const DrawingInfo& info, bool all) {
    Page page(all);
    tellFile(page, info);
    page.entry("entities", number(info.entities) +
                               (info.parts > 0 ? " and " + number(info.parts) +
                                                     " vertices, attributes and ends of sequences"
                                               : ""));
    page.list("types", info.entity_types, kWords);
    page.list("layouts", info.layouts, kWords);
    page.list("layers", info.layers, kWords);
    page.list("blocks", info.blocks, kWords);
    page.list("line types", info.line_types, [](const host::InfoCount& type) {
        return type.name + (type.count > 0 ? " " + number(type.count) : "");
    });
    page.list("text styles", info.text_styles, kWords);
    page.list("dim. styles", info.dimension_styles, [](const std::string& name) { return name; });
    page.list("data of", those(info.applications, [](const auto& app) { return app.objects > 0; }),
              kWords);
    if (info.data_bytes > 0 && info.bytes > 0) {
        const uint64_t share = info.data_bytes * 100 / info.bytes;
        page.entry("data", sizeText(info.data_bytes) + ", " +
                               (share == 0 ? "under 1" : number(share)) + " % of the file");
    }
    page.entry("objects", number(info.objects) + ", " + number(info.groups) + " groups, " +
                              number(info.dictionaries) + " dictionaries, " +
                              number(info.xrecords) + " xrecords");
    page.list("of types", info.object_types, kWords);
    page.list("files", info.files, kWords);
    page.list("largest", info.largest, kWords);
    for (const host::InfoFinding& finding : info.findings) {
        std::string text = finding.what + ": " + number(finding.count);
        for (size_t i = 0; i < finding.examples.size(); ++i)
            text += (i == 0 ? " (" : ", ") + finding.examples[i];
        page.entry("odd", text + (finding.count > finding.examples.size() ? " ...)" : ")"));
    }
}

// --- JSON ---------------------------------------------------------------------------------------

class Writer {
  public:
    void text(const char* key, const std::string& value) {
        json_.key(key);
        json_.string(value);
    }
    void count(const char* key, uint64_t value) { plain(key, std::to_string(value)); }
    void truth(const char* key, bool value) { plain(key, value ? "true" : "false"); }
    void plain(const char* key, const std::string& value) {
        json_.key(key);
        json_.plain(value);
    }
    void box(const char* key, const std::optional<DrawingInfo::Box>& value) {
        json_.key(key);
        if (!value) return json_.plain("null");
        json_.open('[');
        for (const double corner : *value)
            json_.plain(real(corner));
        json_.close(']');
    }
    /// A list of objects; `fields` writes the fields of one.
    template <class Items, class Fields>
    void list(const char* key, const Items& items, const Fields& fields) {
        json_.key(key);
        json_.open('[');
        for (const auto& item : items) {
            json_.open('{');
            fields(item);
            json_.close('}');
        }
        json_.close(']');
    }
    void names(const char* key, const std::vector<std::string>& names) {
        json_.key(key);
        json_.open('[');
        for (const std::string& name : names)
            json_.string(name);
        json_.close(']');
    }
    void counts(const char* key, const std::vector<host::InfoCount>& counts) {
        json_.key(key);
        json_.open('{');
        for (const host::InfoCount& item : counts) {
            json_.key(item.name);
            json_.plain(std::to_string(item.count));
        }
        json_.close('}');
    }
    Json& json() { return json_; }

  private:
    Json json_;
};

void addFile(Writer& out, const DrawingInfo& info) {
    out.text("path", info.path);
    out.text("version", info.version);
    out.text("release", info.release);
    out.truth("binary", info.binary);
    out.text("encoding", info.utf8 ? "UTF-8" : info.code_page);
    out.text("codePage", info.code_page);
    out.count("bytes", info.bytes);
    out.text("savedBy", info.saved_by);
    out.text("created", info.created);
    out.text("updated", info.updated);
    out.text("units", info.units);
    out.box("extents", info.extents);
    out.box("limits", info.limits);
    out.counts("sections", info.sections);
}

void addTables(Writer& out, const DrawingInfo& info) {
    const auto blocks = [&out](const host::InfoBlock& block) {
        out.text("name", block.name);
        out.count("entities", block.entities);
        out.count("references", block.references);
    };
    out.list("layouts", info.layouts, blocks);
    out.list("blocks", info.blocks, blocks);
    out.list("layers", info.layers, [&out](const host::InfoLayer& layer) {
        out.text("name", layer.name);
        out.count("entities", layer.entities);
        out.plain("color", std::to_string(layer.color));
        out.truth("on", layer.on);
        out.truth("frozen", layer.frozen);
        out.truth("locked", layer.locked);
    });
    out.counts("lineTypes", info.line_types);
    out.list("textStyles", info.text_styles, [&out](const host::InfoStyle& style) {
        out.text("name", style.name);
        out.text("font", style.font);
    });
    out.names("dimensionStyles", info.dimension_styles);
    out.list("applications", info.applications, [&out](const host::InfoApplication& app) {
        out.text("name", app.name);
        out.truth("registered", app.registered);
        out.count("objects", app.objects);
        out.count("bytes", app.bytes);
    });
}

void add(Writer& out, const DrawingInfo& info) {
    out.json().open('{');
    addFile(out, info);
    out.count("entities", info.entities);
    out.count("parts", info.parts);
    out.counts("entityTypes", info.entity_types);
    addTables(out, info);
    out.count("objects", info.objects);
    out.count("groups", info.groups);
    out.count("dictionaries", info.dictionaries);
    out.count("xrecords", info.xrecords);
    out.counts("objectTypes", info.object_types);
    out.count("dataBytes", info.data_bytes);
    out.list("files", info.files, [&out](const host::InfoFile& file) {
        out.text("kind", file.kind);
        out.text("name", file.name);
        out.text("path", file.path);
        out.truth("found", file.found);
    });
    out.list("largest", info.largest, [&out](const host::InfoObject& object) {
        out.text("handle", object.handle);
        out.text("type", object.type);
        out.count("bytes", object.bytes);
    });
    out.list("findings", info.findings, [&out](const host::InfoFinding& finding) {
        out.text("what", finding.what);
        out.count("count", finding.count);
        out.names("examples", finding.examples);
    });
    out.json().close('}');
}

Status show(const InfoOptions& options) {
    Status status = kDone;
    Writer out;
    if (options.json) out.json().open('[');
    for (size_t i = 0; i < options.drawings.size(); ++i) {
        DrawingInfo info;
        const std::string& path = options.drawings[i];
        if (report(path, host::describeDrawing(path, info, {options.recover})) != kDone) {
            status = kFileError;
        } else if (options.json) {
            add(out, info);
        } else {
            tell(info, options.all);
        }
    }
    if (options.json) {
        out.json().close(']');
        host::write(host::Channel::Lisp, kz::toUtf16(out.json().text() + "\n"));
    }
    host::flush();
    return status;
}

}  // namespace

Run defineInfo(Options& line) {
    const auto options = std::make_shared<InfoOptions>();
    line.arguments("FILE", options->drawings, "Drawings to look at");
    line.flag("--json", options->json, "As a JSON list of drawings, with all that was counted");
    line.flag("--all", options->all, "Long lists in full");
    addRecoverOption(line, options->recover);
    return [options] { return show(*options); };
}

}  // namespace console
