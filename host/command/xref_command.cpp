/// XREF: attaches drawings, and lists, detaches, unloads, reloads and redirects those attached.
#include <algorithm>
#include <array>

#include "command/drafting.h"
#include "command/insertion.h"
#include "command/name_lists.h"
#include "db/attach.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

std::u16string quoted(const std::u16string& name) {
    return u"\"" + name + u"\"";
}

std::u16string_view stateText(AttachmentState state) {
    switch (state) {
        case AttachmentState::Loaded:
            return u"loaded";
        case AttachmentState::Unloaded:
            return u"unloaded";
        case AttachmentState::Hidden:
            return u"not shown here";
        case AttachmentState::Missing:
            return u"not found";
        case AttachmentState::Circular:
            return u"leads back to the drawing itself";
        case AttachmentState::Broken:
            return u"can't be read";
        default:
            return u"";
    }
}

class XrefCommand {
  public:
    explicit XrefCommand(CommandPrompt& prompt)
        : prompt_(prompt), drawing_(commandDrawing(prompt)) {}

    void run() {
        const Answered answer = prompt_.keyword(
            {u"Enter an option [?/Bind/Detach/Path/Unload/Reload/Overlay/Attach] <Attach>: ", 0,
             u"? Bind Detach Path Unload Reload Overlay Attach", nullptr});
        if (answer != Answered::Keyword) return attach();
        for (const Option& option : kOptions) {
            if (prompt_.given(option.keyword)) return (this->*option.run)();
        }
    }

  private:
    struct Option {
        std::u16string_view keyword;
        void (XrefCommand::*run)();
    };
    static const std::array<Option, 8> kOptions;

    // --- attaching ------------------------------------------------------------------------------

    void attach() { attachAs(u"Enter name of file to attach: ", false); }
    void overlay() { attachAs(u"Enter name of file to overlay: ", true); }

    void attachAs(std::u16string_view text, bool overlay) {
        const std::u16string answer = askName(prompt_, text);
        if (answer.empty()) return;
        const size_t equals = answer.find(u'=');
        const bool named = equals != std::u16string::npos;
        std::u16string path = named ? answer.substr(equals + 1) : answer;
        const std::u16string name = named ? answer.substr(0, equals) : blockNameOf(path);
        if (path.empty()) path = name;
        Slot block = drawing_.findSymbol("BLOCK_RECORD", name);
        Attachment present;
        if (block != kNoSlot && describeAttachment(drawing_, block, present)) {
            prompt_.say(quoted(present.name) + u" is attached already, from " + present.path +
                        u"; that is inserted once more.");
        } else {
            std::u16string why;
            block = attachDrawing(drawing_, name, path, overlay, why);
            if (block == kNoSlot) prompt_.refuse(why);
            prompt_.say((overlay ? u"Overlay " : u"Attached ") + quoted(name) + u": " + path +
                        u" loaded.");
        }
        askAndInsert(prompt_, block);
    }

    // --- those attached -------------------------------------------------------------------------

    std::vector<Slot> listed(std::u16string_view list) {
        Attachment ignored;
        return listedRecords(
            drawing_, "BLOCK_RECORD", list,
            [&](Slot block) { return describeAttachment(drawing_, block, ignored); },
            [this](const std::u16string& item) {
                prompt_.warn(u"there is no attached drawing " + quoted(item) + u".");
            });
    }

    std::vector<Slot> ask(std::u16string_view what) {
        return listed(askName(prompt_, u"Enter Xref name(s) to " + std::u16string(what) + u": "));
    }

    void tellCount(size_t count, std::u16string_view what) {
        prompt_.say(kz::toUtf16(std::to_string(count)) +
                    (count == 1 ? u" attached drawing" : u" attached drawings") +
                    std::u16string(what));
    }

    void list() {
        const std::u16string names = askName(prompt_, u"Enter Xref name(s) to list <*>: ");
        const bool all = names.empty() || names == u"*";
        const std::vector<Slot> blocks = all && attachments(drawing_.facade()).empty()
                                             ? std::vector<Slot>{}
                                             : listed(all ? u"*" : names);
        for (const Slot block : blocks) {
            Attachment attachment;
            describeAttachment(drawing_, block, attachment);
            prompt_.say(quoted(attachment.name) + u": " + attachment.path +
                        (attachment.overlay ? u", overlay, " : u", attached, ") +
                        std::u16string(stateText(attachmentState(drawing_, block))));
        }
        tellCount(blocks.size(), u"");
    }

    void detach() {
        const std::vector<Slot> blocks = ask(u"detach");
        detachDrawings(drawing_, blocks);
        tellCount(blocks.size(), u" detached");
    }

    void unload() {
        const std::vector<Slot> blocks = ask(u"unload");
        for (const Slot block : blocks)
            unloadDrawing(drawing_, block);
        tellCount(blocks.size(), u" unloaded");
    }

    void reload() {
        size_t read = 0;
        for (const Slot block : ask(u"reload")) {
            std::u16string why;
            if (reloadDrawing(drawing_, block, why)) {
                ++read;
            } else {
                prompt_.warn(quoted(drawing_.symbolName(block)) + u": " + why);
            }
        }
        tellCount(read, u" reloaded");
    }

    void path() {
        for (const Slot block : ask(u"edit path")) {
            Attachment attachment;
            describeAttachment(drawing_, block, attachment);
            prompt_.say(quoted(attachment.name) + u", old path: " + attachment.path);
            const std::u16string path = askName(prompt_, u"Enter new path: ");
            std::u16string why;
            if (!path.empty() && !setAttachmentPath(drawing_, block, path, why)) {
                prompt_.warn(quoted(attachment.name) + u": " + why);
            }
        }
    }

    void bind() { prompt_.refuse(u"binding an attached drawing is not available."); }

    CommandPrompt& prompt_;
    Database& drawing_;
};

const std::array<XrefCommand::Option, 8> XrefCommand::kOptions = {
    {{u"?", &XrefCommand::list},
     {u"Bind", &XrefCommand::bind},
     {u"Detach", &XrefCommand::detach},
     {u"Path", &XrefCommand::path},
     {u"Unload", &XrefCommand::unload},
     {u"Reload", &XrefCommand::reload},
     {u"Overlay", &XrefCommand::overlay},
     {u"Attach", &XrefCommand::attach}}};

void xref(CommandPrompt& prompt) {
    XrefCommand(prompt).run();
}

const Command kCommands[] = {
    {u"XREF", u"XR", xref, true, "Attaches drawings, lists, unloads, reloads and detaches them."},
};

}  // namespace

std::span<const Command> xrefCommands() {
    return kCommands;
}

}  // namespace host
