/// kz plot: a picture of a drawing.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "acad/ads.h"
#include "acad/db.h"
#include "canvas.h"
#include "group_scan.h"
#include "host/output.h"
#include "kz_tls21an/text.h"
#include "options.h"
#include "session.h"

namespace console {

namespace fs = std::filesystem;

namespace {

struct PlotOptions {
    std::string drawing, output, window, size, dots, highlight;
    bool view = false;
    bool paper = false;
    bool dark = false;
    bool handles = false;
    bool recover = false;
    bool groups = false;
};

/// Makes a list of handles of what stands for entities: a set, a name, or a list of these.
const char kHandlesOf[] = R"lisp(
((lambda (value / handles add index)
   (defun add (one)
     (cond ((= (type one) 'ENAME)
            (setq handles (cons (cdr (assoc 5 (entget one))) handles)))
           ((= (type one) 'PICKSET)
            (setq index (sslength one))
            (while (> index 0) (add (ssname one (setq index (1- index))))))
           ((listp one) (mapcar 'add one))))
   (add value)
   handles)
 )lisp";

/// The members of a group by its name in the drawing.
std::string groupMembers(const std::string& name) {
    std::string quoted = "\"";
    for (const char letter : name) {
        if (letter == '"' || letter == '\\') quoted += '\\';
        quoted += letter;
    }
    quoted += '"';
    return "((lambda (groups / group)"
           "   (if (setq group (and groups (dictsearch (cdr (assoc -1 groups)) " +
           quoted +
           ")))"
           "     (mapcar 'cdr (vl-remove-if-not '(lambda (pair) (= (car pair) 340)) group))))"
           " (dictsearch (namedobjdict) \"ACAD_GROUP\"))";
}

/// Numbers with a separator between them; false when the text is not just that.
bool readNumbers(const std::string& text, char separator, double* values, int count) {
    const char* at = text.c_str();
    for (int i = 0; i < count; ++i) {
        char* end = nullptr;
        values[i] = std::strtod(at, &end);
        if (end == at || !std::isfinite(values[i])) return false;
        if (*end != (i + 1 < count ? separator : '\0')) return false;
        at = end + 1;
    }
    return true;
}

/// The entities of these handles, as ("1F" "2A") or 1F,2A. @return false for one that nobody has
bool entitiesOf(const std::string& text, std::vector<AcDbObjectId>& ids, std::string& wrong) {
    std::string handle;
    for (const char letter : text + ",") {
        if (std::isxdigit(static_cast<unsigned char>(letter)) != 0) {
            handle += letter;
            continue;
        }
        if (handle.empty()) continue;
        ads_name name;
        AcDbObjectId id;
        wrong = handle;
        if (acdbHandEnt(kz::toUtf16(handle).c_str(), name) != RTNORM ||
            acdbGetObjectId(id, name) != Acad::eOk) {
            return false;
        }
        ids.push_back(id);
        handle.clear();
    }
    return true;
}

bool isHandleList(const std::string& text) {
    return text.find_first_not_of("0123456789abcdefABCDEF,") == std::string::npos;
}

/// What is to stand out: "(expression)", the name of a group, or handles with commas between them.
Status findStressed(const std::string& wanted, std::vector<AcDbObjectId>& ids) {
    const bool expression = wanted.front() == '(' || wanted.front() == '!';
    const std::string form =
        expression ? wanted.substr(wanted.front() == '!' ? 1 : 0) : groupMembers(wanted);
    const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(kHandlesOf + form + ")"));
    const Status status = report(outcome);
    if (status != kDone) return status;
    std::string unknown;
    entitiesOf(kz::toUtf8(outcome.value), ids, unknown);
    if (ids.empty() && isHandleList(wanted) && !entitiesOf(wanted, ids, unknown)) ids.clear();
    if (!ids.empty()) return kDone;
    complain("--highlight " + wanted + ": nothing to highlight; it takes the name of a group, " +
             "handles as 1F,2A, or an expression whose value is a set or entities");
    return kWrongUsage;
}

Status usage(const std::string& text) {
    complain(text);
    return kWrongUsage;
}

Status readRequest(const PlotOptions& options, host::PlotRequest& request, double& dots) {
    double page[2] = {request.page_width, request.page_height};
    if (!options.size.empty() && !readNumbers(options.size, 'x', page, 2)) {
        return usage("--size takes WIDTHxHEIGHT in millimetres, as 420x297, not \"" + options.size +
                     "\"");
    }
    request.page_width = page[0];
    request.page_height = page[1];
    request.has_window = !options.window.empty();
    if (request.has_window && !readNumbers(options.window, ',', request.window, 4)) {
        return usage("--window takes X1,Y1,X2,Y2 in drawing units, not \"" + options.window + "\"");
    }
    if (!options.dots.empty() && !readNumbers(options.dots, ',', &dots, 1)) dots = 0.0;
    constexpr double kMostDots = 20000.0;
    const double across = std::max(page[0], page[1]) / 25.4 * dots;
    if (!(dots >= 1.0) || !(across <= kMostDots)) {
        return usage("--dpi takes the dots of an inch; a picture has at most 20000 of them across");
    }
    request.as_viewed = options.view;
    request.paper = options.paper;
    request.dark = options.dark;
    request.handles = options.handles;
    return kDone;
}

bool writeFile(const std::string& path, const std::string& bytes) {
    // A picture that is there stays as it is until the new one is complete.
    const std::string beside = path + ".tmp";
    std::error_code error;
    {
        std::ofstream file(beside, std::ios::binary | std::ios::trunc);
        file << bytes;
        if (!file.flush()) {
            fs::remove(beside, error);
            return false;
        }
    }
    fs::rename(beside, path, error);
    if (!error) return true;
    fs::remove(beside, error);
    return false;
}

void tell(const PlotOptions& options, const host::PlotReport& report) {
    std::ostringstream text;
    text << options.output << ": " << report.drawn << (report.drawn == 1 ? " entity" : " entities")
         << ", 1 drawing unit is " << report.scale << " mm\n";
    if (!report.not_drawn.empty()) {
        text << "not drawn:";
        const char* between = " ";
        for (const auto& [type, count] : report.not_drawn) {
            text << between << count << " " << type;
            between = ", ";
        }
        text << "\n";
    }
    host::write(host::Channel::Lisp, kz::toUtf16(text.str()));
}

/// A colour for each of any number of things: hues a golden angle apart, of which no few in a row
/// are alike, and after each turn another darkness.
host::PlotColor colorNumber(size_t number) {
    constexpr double kGoldenAngle = 137.50776405;
    constexpr double kTones[] = {0.85, 0.6, 0.72};
    const double tone = kTones[number / 8 % 3];
    const double hue = std::fmod(static_cast<double>(number) * kGoldenAngle, 360.0) / 60.0;
    const auto part = [&](double shift) {
        const double at = std::fmod(shift + hue, 6.0);
        const double falling = std::min({at, 4.0 - at, 1.0});
        return static_cast<uint8_t>(255.0 * tone * (1.0 - 0.85 * std::max(0.0, falling)));
    };
    return {part(5.0), part(3.0), part(1.0)};
}

/// Gives the entities of each tree of groups a colour of its own. The trees are counted in the
/// order of the drawing, so that colours stay from run to run.
void colorGroups(host::PlotRequest& request) {
    const GroupScan scan = scanGroups();
    const std::vector<size_t> roots = scan.roots();
    std::map<size_t, host::PlotColor> colors;
    for (size_t i = 0; i < roots.size(); ++i) {
        if (roots[i] == i) colors.emplace(i, colorNumber(colors.size()));
    }
    for (size_t i = 0; i < roots.size(); ++i) {
        if (roots[i] == kNobody) continue;
        for (const size_t entity : scan.groups[i].entities) {
            const std::string handle = kz::toUtf8(scan.entities[entity].handle);
            request.colored.emplace(std::strtoull(handle.c_str(), nullptr, 16), colors[roots[i]]);
        }
    }
    // Where there are no groups all is grey, too: 0 is nobody's handle.
    request.colored.emplace(0, host::PlotColor{});
}

Status draw(const PlotOptions& options, host::PlotRequest& request, Canvas::Format format,
            double dots) {
    if (!options.highlight.empty()) {
        const Interruptible interruptible;
        const Status status = findStressed(options.highlight, request.stressed);
        if (status != kDone) return status;
    }
    if (options.groups) colorGroups(request);
    const host::PlotColor background =
        options.dark ? host::PlotColor{} : host::PlotColor{255, 255, 255};
    Canvas canvas(format, request.page_width, request.page_height, dots, background);
    host::PlotReport report;
    std::string error, bytes;
    if (!host::plotDrawing(request, canvas, report, error)) return usage(error);
    if (!canvas.finish(bytes, error)) return usage(options.output + ": " + error);
    if (!writeFile(options.output, bytes)) {
        complain(options.output + ": can't be written");
        return kFileError;
    }
    tell(options, report);
    return kDone;
}

Status plot(const PlotOptions& options) {
    if (options.drawing.empty()) return usage("plot takes the drawing to show");
    if (options.output.empty()) return usage("plot takes -o FILE, the picture to write");
    Canvas::Format format;
    if (!Canvas::formatOf(options.output, format)) {
        return usage(options.output + ": a picture ends in .svg, .png or .pdf");
    }
    host::PlotRequest request;
    double dots = 150.0;
    Status status = readRequest(options, request, dots);
    if (status != kDone) return status;
    SessionOptions session;
    session.drawing = options.drawing;
    session.recover = options.recover;
    status = openSession(session);
    if (status == kDone) status = draw(options, request, format, dots);
    return closeSession(session, status);
}

}  // namespace

Run definePlot(Options& line) {
    const auto options = std::make_shared<PlotOptions>();
    line.argument("FILE", options->drawing, "Drawing to show");
    line.file("-o,--output", options->output, "Picture to write: .svg, .png or .pdf");
    line.value("--window", options->window, "X1,Y1,X2,Y2",
               "Show this part; all that is drawn without it");
    line.value("--size", options->size, "WxH", "Page in millimetres; 420x297 without it");
    line.value("--dpi", options->dots, "N", "Dots of an inch in a .png; 150 without it");
    line.flag("--view", options->view, "As the drawing is viewed; from above without it");
    line.flag("--paper", options->paper, "Paper space, with what its viewports show");
    line.flag("--dark", options->dark, "On black, as on a screen");
    line.value("--highlight", options->highlight, "WHAT",
               "Let a group, handles (1F,2A) or the entities of an expression stand out");
    line.flag("--groups", options->groups, "Each tree of groups in a colour of its own");
    line.flag("--handles", options->handles, "Show the handle beside each entity");
    addRecoverOption(line, options->recover);
    return [options] { return plot(*options); };
}

}  // namespace console
