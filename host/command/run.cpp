/// Running of commands. A command that Lisp feeds runs on a thread of its own, so that it can rest
/// in the midst of a prompt; only one of the two threads ever runs, and the command's never asks
/// the user nor evaluates Lisp.
#include "command/run.h"

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <cstdarg>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "base/faults.h"
#include "command/command.h"
#include "host/command.h"
#include "host/output.h"
#include "host/undo.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

using Kind = InputToken::Kind;

std::vector<std::u16string>& running() {
    static std::vector<std::u16string> names;
    return names;
}

class RunningName {
  public:
    explicit RunningName(const Command& command) { running().emplace_back(command.name); }
    ~RunningName() { running().pop_back(); }
    RunningName(const RunningName&) = delete;
    RunningName& operator=(const RunningName&) = delete;
};

bool echoes() {
    resbuf echo{};
    return acedGetVar(u"CMDECHO", &echo) != RTNORM || echo.restype != RTSHORT ||
           echo.resval.rint != 0;
}

/// Prompt and answer of a command that a program drives.
void showAnswer(std::u16string_view prompt, const InputToken& token) {
    if (!echoes()) return;
    if (prompt.starts_with(u'\n')) prompt.remove_prefix(1);
    tell(std::u16string(prompt) + token.typed());
}

/// Cuts the answers of a text at its blanks, as if it was typed: the rest goes back to the front.
void cutText(InputToken& token, bool blanks, std::deque<InputToken>& tokens) {
    if (blanks || token.kind != Kind::Text) return;
    const std::u16string text = std::move(token.text);
    const size_t length = firstAnswerLength(text);
    if (length < text.size()) {
        tokens.push_front(InputToken::ofText(std::u16string_view(text).substr(length + 1)));
    }
    token = InputToken::ofText(std::u16string_view(text).substr(0, length));
}

/// Answers from a list.
class ListedInput : public InputSource {
  public:
    explicit ListedInput(std::vector<InputToken> tokens) {
        tokens_.assign(std::make_move_iterator(tokens.begin()),
                       std::make_move_iterator(tokens.end()));
    }
    bool next(const InputRequest& request, InputToken& token) override {
        if (tokens_.empty()) {
            ran_dry_ = true;
            return false;
        }
        token = std::move(tokens_.front());
        tokens_.pop_front();
        if (token.kind == Kind::Pause) return userInput().next(request, token);
        cutText(token, request.blanks, tokens_);
        showAnswer(request.prompt, token);
        return true;
    }
    bool empty() const { return tokens_.empty(); }
    bool ranDry() const { return ran_dry_; }

  private:
    std::deque<InputToken> tokens_;
    bool ran_dry_ = false;
};

CommandEnd unknown(const InputToken& token, std::u16string_view before) {
    const std::u16string text = token.typed();
    if (before.empty()) {
        tell(u"Unknown command \"" + text + u"\".");
    } else {
        tell(std::u16string(before) + u": an answer too many: \"" + text + u"\".");
    }
    return CommandEnd::Unknown;
}

void tellTooFew(std::u16string_view name) {
    tell(std::u16string(name) + u": cancelled, it asked for more answers.");
}

/// What a command has asked for while it rests, and the answer that it gets.
class Resting : public InputSource {
  public:
    explicit Resting(const Command& command) : command_(command) {
        sigset_t all;
        sigset_t present;
        sigfillset(&all);
        // Signals are for the thread that reads from the terminal.
        pthread_sigmask(SIG_SETMASK, &all, &present);
        thread_ = std::thread([this] { run(); });
        pthread_sigmask(SIG_SETMASK, &present, nullptr);
        letRun();
    }
    ~Resting() override { thread_.join(); }

    bool isDone() const { return done_; }
    CommandEnd end() const { return end_; }
    const InputRequest& request() const { return request_; }

    /// Gives the answer that it waits for, nothing for the end of all answers, and lets it run
    /// until it rests again or is done.
    void answer(std::optional<InputToken> token) {
        answer_ = std::move(token);
        letRun();
    }

    /// On the command's thread: rests until the answer is there.
    bool next(const InputRequest& request, InputToken& token) override {
        request_ = request;
        std::unique_lock lock(mutex_);
        command_runs_ = false;
        turn_.notify_all();
        turn_.wait(lock, [this] { return command_runs_; });
        if (!answer_) return false;
        token = std::move(*answer_);
        return true;
    }

  private:
    /// On the caller's thread: the command runs, the caller waits.
    void letRun() {
        const InputScope scope(*this);
        std::unique_lock lock(mutex_);
        command_runs_ = true;
        turn_.notify_all();
        turn_.wait(lock, [this] { return !command_runs_; });
    }

    void run() {
        {
            std::unique_lock lock(mutex_);
            turn_.wait(lock, [this] { return command_runs_; });
        }
        end_ = runCommand(command_);
        const std::unique_lock lock(mutex_);
        done_ = true;
        command_runs_ = false;
        turn_.notify_all();
    }

    const Command& command_;
    std::mutex mutex_;
    std::condition_variable turn_;
    bool command_runs_ = false;
    bool done_ = false;
    CommandEnd end_ = CommandEnd::Done;
    InputRequest request_;
    std::optional<InputToken> answer_;
    std::thread thread_;
};

struct Feeding {
    std::unique_ptr<Resting> command;
    std::u16string last_done;  ///< command that the present series of answers has just ended
};

Feeding& feeding() {
    static Feeding instance;
    return instance;
}

/// Forgets the command when it is done. @return how it ended, Done while it rests
CommandEnd settle() {
    Feeding& state = feeding();
    if (!state.command->isDone()) return CommandEnd::Done;
    const CommandEnd end = state.command->end();
    state.command.reset();
    return end;
}

CommandEnd feedOne(InputToken token, std::deque<InputToken>& rest) {
    Feeding& state = feeding();
    if (state.command == nullptr) {
        if (token.kind == Kind::Cancel) return CommandEnd::Done;
        cutText(token, false, rest);
        const Command* command = token.kind == Kind::Text ? findCommand(token.text) : nullptr;
        if (command == nullptr) return unknown(token, state.last_done);
        showAnswer(u"", InputToken::ofText(command->name));
        state.last_done = command->name;
        state.command = std::make_unique<Resting>(*command);
        return settle();
    }
    if (token.kind == Kind::Pause) {
        if (!userInput().next(state.command->request(), token)) {
            token = InputToken::of(Kind::Cancel);
        }
    } else {
        cutText(token, state.command->request().blanks, rest);
        showAnswer(state.command->request().prompt, token);
    }
    state.command->answer(std::move(token));
    return settle();
}

}  // namespace

CommandEnd runCommand(const Command& command) {
    const RunningName name(command);
    CommandPrompt prompt(command.name);
    std::optional<UndoStep> step;
    if (command.changes) step.emplace(kz::toUtf8(command.name));
    try {
        command.run(prompt);
        return CommandEnd::Done;
    } catch (const Cancelled&) {
        return CommandEnd::Cancelled;
    } catch (const std::bad_alloc&) {
        tell(prompt.name() + u": out of memory.");
        return CommandEnd::Cancelled;
    }
}

CommandEnd runCommands(std::vector<InputToken> tokens) {
    ListedInput input(std::move(tokens));
    const InputScope scope(input);
    std::u16string before;
    while (!input.empty()) {
        InputToken token;
        input.next({}, token);
        const Command* command = token.kind == Kind::Text ? findCommand(token.text) : nullptr;
        if (command == nullptr) return unknown(token, before);
        const CommandEnd end = runCommand(*command);
        if (end == CommandEnd::Done) {
            before = command->name;
            continue;
        }
        if (!input.ranDry()) return end;
        tellTooFew(command->name);
        return CommandEnd::TooFew;
    }
    return CommandEnd::Done;
}

CommandEnd RestingCommand::feed(const InputToken& token) {
    std::deque<InputToken> tokens = {token};
    CommandEnd end = CommandEnd::Done;
    while (!tokens.empty() && end == CommandEnd::Done) {
        InputToken next = std::move(tokens.front());
        tokens.pop_front();
        end = feedOne(std::move(next), tokens);
    }
    return end;
}

bool RestingCommand::exists() {
    return feeding().command != nullptr;
}

void RestingCommand::cancel() {
    Feeding& state = feeding();
    while (state.command != nullptr) {
        state.command->answer(std::nullopt);
        settle();
    }
    state.last_done.clear();
}

void RestingCommand::finish() {
    Feeding& state = feeding();
    while (state.command != nullptr) {
        InputToken token;
        if (!userInput().next(state.command->request(), token)) {
            const std::u16string name = state.last_done;
            cancel();
            tellTooFew(name);
            break;
        }
        state.command->answer(std::move(token));
        settle();
    }
    state.last_done.clear();
}

const std::u16string& runningCommand() {
    static const std::u16string kNone;
    return running().empty() ? kNone : running().back();
}

// --- the table ----------------------------------------------------------------------------------

namespace {

std::span<const Command> (*const kFamilies[])() = {
    fileCommands,     undoCommands,  systemCommands,  drawCommands, arcCommands,
    polylineCommands, textCommands,  blockCommands,   xrefCommands, modifyCommands,
    propertyCommands, layerCommands, inquiryCommands, ucsCommands,  viewCommands};

}  // namespace

const Command* findCommand(std::u16string_view name) {
    while (name.starts_with(u'_') || name.starts_with(u'.') || name.starts_with(u'\'') ||
           name.starts_with(u'-')) {
        name.remove_prefix(1);
    }
    if (name.empty()) return nullptr;
    for (const auto family : kFamilies) {
        for (const Command& command : family()) {
            if (kz::compareNoCase(name, command.name) == 0) return &command;
            if (command.alias != nullptr && kz::compareNoCase(name, command.alias) == 0)
                return &command;
        }
    }
    return variableCommand(name);
}

std::vector<CommandInfo> commands() {
    std::vector<CommandInfo> all;
    for (const auto family : kFamilies) {
        for (const Command& command : family()) {
            all.push_back(
                {command.name, command.alias == nullptr ? u"" : command.alias, command.help});
        }
    }
    std::sort(all.begin(), all.end(),
              [](const CommandInfo& a, const CommandInfo& b) { return a.name < b.name; });
    return all;
}

bool isCommand(std::u16string_view word) {
    return findCommand(word) != nullptr;
}

namespace {

/// What is left of a typed line in front of the user's own answers.
class LineInput : public InputSource {
  public:
    explicit LineInput(std::u16string_view line) {
        if (!line.empty()) tokens_.push_back(InputToken::ofText(line));
    }
    bool next(const InputRequest& request, InputToken& token) override {
        if (tokens_.empty()) return userInput().next(request, token);
        token = std::move(tokens_.front());
        tokens_.pop_front();
        cutText(token, request.blanks, tokens_);
        return true;
    }

  private:
    std::deque<InputToken> tokens_;
};

}  // namespace

bool runCommandLine(std::u16string_view line) {
    while (line.ends_with(u' ') || line.ends_with(u'\n'))
        line.remove_suffix(1);
    const size_t length = firstAnswerLength(line);
    const std::u16string_view name = line.substr(0, length);
    const Command* command = findCommand(name);
    if (command == nullptr) {
        tell(u"Unknown command \"" + std::u16string(name) + u"\".");
        return false;
    }
    LineInput input(line.substr(std::min(length + 1, line.size())));
    const InputScope scope(input);
    const CommandEnd end = runCommand(*command);
    if (end == CommandEnd::Cancelled) tell(u"*Cancel*");
    return end == CommandEnd::Done;
}

}  // namespace host

// --- the platform's functions -------------------------------------------------------------------

namespace {

int statusOf(host::CommandEnd end) {
    switch (end) {
        case host::CommandEnd::Done:
            return RTNORM;
        case host::CommandEnd::Unknown:
            return RTERROR;
        default:
            return RTCAN;
    }
}

int runTokens(std::vector<host::InputToken> tokens) {
    int status = 0;
    if (host::mustFail(host::Call::acedCommandS, status)) return status;
    if (!host::runningCommand().empty() || host::RestingCommand::exists()) return RTREJ;
    return statusOf(host::runCommands(std::move(tokens)));
}

}  // namespace

extern "C" {

int acedCmdS(const resbuf* chain) {
    std::vector<host::InputToken> tokens;
    for (; chain != nullptr; chain = chain->rbnext) {
        host::InputToken token;
        if (!host::InputToken::ofNode(*chain, token)) return RTERROR;
        tokens.push_back(std::move(token));
    }
    return runTokens(std::move(tokens));
}

int acedCommandS(int restype, ...) {
    std::vector<host::InputToken> tokens;
    va_list arguments;
    va_start(arguments, restype);
    bool good = true;
    for (int type = restype; good && type != RTNONE && type != 0; type = va_arg(arguments, int)) {
        switch (type) {
            case RTSTR: {
                const auto* text = va_arg(arguments, const ACHAR*);
                tokens.push_back(host::InputToken::ofText(text == nullptr ? u"" : text));
                break;
            }
            case RTREAL:
            case RTANG:
                tokens.push_back(host::InputToken::ofReal(va_arg(arguments, double)));
                break;
            case RTSHORT:
            case RTLONG:
                tokens.push_back(host::InputToken::ofInteger(va_arg(arguments, int)));
                break;
            case RTPOINT:
            case RT3DPOINT: {
                const auto* point = va_arg(arguments, const double*);
                const ads_point copy = {point[0], point[1], type == RT3DPOINT ? point[2] : 0.0};
                tokens.push_back(host::InputToken::ofPoint(copy));
                break;
            }
            case RTENAME:
            case RTPICKS: {
                const auto* name = va_arg(arguments, const int64_t*);
                const auto kind =
                    type == RTENAME ? host::InputToken::Kind::Entity : host::InputToken::Kind::Set;
                tokens.push_back(host::InputToken::ofName(kind, name));
                break;
            }
            default:
                good = false;
        }
    }
    va_end(arguments);
    return good ? runTokens(std::move(tokens)) : static_cast<int>(RTERROR);
}
}
