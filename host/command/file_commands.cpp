/// QSAVE, SAVE and SAVEAS: the drawing's way to a file.
#include <sys/stat.h>

#include "base/search_path.h"
#include "command/command.h"
#include "db/database.h"
#include "dxf/versions.h"
#include "dxf/writer.h"
#include "edit/sysvars.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Value of EXPERT from which existing drawings are replaced without a question.
constexpr int kReplacesUnasked = 2;

std::string_view withoutBlanks(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// The file that an answer means: quotes are taken off, ".dxf" is added.
std::string fileOf(const CommandPrompt& prompt, std::string_view answer) {
    answer = withoutBlanks(answer);
    if (answer.size() > 1 && answer.front() == '"' && answer.back() == '"') {
        answer = answer.substr(1, answer.size() - 2);
    }
    std::string file = spelledPath(std::string(answer));
    const size_t name = file.rfind('/') == std::string::npos ? 0 : file.rfind('/') + 1;
    const size_t dot = file.rfind('.');
    if (dot == std::string::npos || dot <= name) {
        file += ".dxf";
    } else if (kz::toUpper(kz::toUtf16(file.substr(dot))) == u".DWG") {
        prompt.refuse(kz::toUtf16(file + ": DWG can't be written, only DXF."));
    }
    return file;
}

void save(const CommandPrompt& prompt, Database& drawing, const std::string& path,
          const SaveOptions& options) {
    const SaveOutcome outcome = dxf::writeFile(drawing, path, options);
    if (!outcome.saved) prompt.refuse(kz::toUtf16(outcome.error));
    for (const std::string& note : outcome.notes)
        prompt.warn(kz::toUtf16(note));
    prompt.say(kz::toUtf16("saved as " + path));
}

std::string askFile(CommandPrompt& prompt, const Database& drawing) {
    std::u16string text = u"Save drawing as";
    if (!drawing.path().empty()) text += u" <" + kz::toUtf16(drawing.path()) + u">";
    std::string answer = kz::toUtf8(prompt.text(text + u": ", true));
    if (!withoutBlanks(answer).empty()) return fileOf(prompt, answer);
    if (drawing.path().empty()) prompt.refuse(u"the drawing has no name yet.");
    return drawing.path();
}

/// Asks before another drawing than the present one is replaced.
void askToReplace(CommandPrompt& prompt, const Database& drawing, const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || dxf::isOwnFile(drawing, path)) return;
    if (integerVariable("EXPERT", 0) >= kReplacesUnasked) return;
    const Answered answered = prompt.keyword(
        {u"A drawing with this name already exists. Replace it? [Yes/No] <N>: ", 0, u"Yes No"});
    if (answered != Answered::Keyword || !prompt.given(u"Yes")) {
        prompt.refuse(kz::toUtf16(path + " was left as it is."));
    }
}

void quickSave(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    SaveOptions options;
    options.rename = true;
    const bool named = !drawing.path().empty();
    const std::string path = named ? drawing.path() : askFile(prompt, drawing);
    if (!named) askToReplace(prompt, drawing, path);
    save(prompt, drawing, path, options);
}

void saveCopy(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    const std::string path = askFile(prompt, drawing);
    askToReplace(prompt, drawing, path);
    SaveOptions options;
    options.rename = drawing.path().empty();
    save(prompt, drawing, path, options);
}

/// What was answered to "file format": a version, a file, or both.
struct Format {
    std::string version;
    std::string file;
};

Format askFormat(CommandPrompt& prompt, const Database& drawing) {
    const std::string present = dxf::versionName(drawing.saveVersion());
    const std::string answer = kz::toUtf8(
        prompt.text(u"Enter file format [R2000/R2004/R2007/R2010/R2013/R2018] or file name <" +
                        kz::toUtf16(present) + u">: ",
                    true));
    const std::string_view text = withoutBlanks(answer);
    const size_t end = std::min(text.find(' '), text.size());
    std::string_view word = text.substr(0, end);
    if (word.starts_with('_')) word.remove_prefix(1);
    std::string refusal;
    Format format;
    format.version = dxf::targetVersion(word, refusal);
    if (format.version.empty() && refusal.find("can't be saved") != std::string::npos) {
        prompt.refuse(kz::toUtf16(refusal + "."));
    }
    const std::string_view file = format.version.empty() ? text : withoutBlanks(text.substr(end));
    if (!file.empty()) format.file = fileOf(prompt, file);
    return format;
}

void saveAs(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    const Format format = askFormat(prompt, drawing);
    const std::string path = format.file.empty() ? askFile(prompt, drawing) : format.file;
    askToReplace(prompt, drawing, path);
    SaveOptions options;
    options.rename = true;
    options.version = format.version;
    save(prompt, drawing, path, options);
}

const Command kCommands[] = {
    {u"QSAVE", nullptr, quickSave, false, "Saves the drawing under its name."},
    {u"SAVE", nullptr, saveCopy, false, "Saves a copy of the drawing; its name stays."},
    {u"SAVEAS", nullptr, saveAs, false,
     "Saves the drawing under another name or as another version, and goes on with that file."},
};

}  // namespace

std::span<const Command> fileCommands() {
    return kCommands;
}

}  // namespace host
