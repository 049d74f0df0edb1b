/// Input from the user, and commands.
#include <algorithm>

#include "acad/ed.h"
#include "command/command.h"
#include "command/run.h"
#include "edit/input.h"
#include "lisp/builtin.h"
#include "lisp/input_token.h"
#include "lisp/interpreter.h"
#include "lisp/selection_set.h"

namespace host::lisp {

namespace {

constexpr size_t kTextRoom = 256;

/// nil, or the text of a prompt.
std::u16string promptArg(Interpreter& in, const Value& value) {
    return value.isNil() ? std::u16string() : std::u16string(textArg(in, value));
}

Value pointValue(const ads_point point) {
    return makeList(Value::real(point[0]), Value::real(point[1]), Value::real(point[2]));
}

/// The value of an input function: of a keyword its text, of Enter nil.
Value answer(Interpreter& in, int status, const Value& value) {
    ACHAR text[kTextRoom];
    switch (status) {
        case RTNORM:
            return value;
        case RTNONE:
            return {};
        case RTKWORD:
            return acedGetInput(text) == RTNORM ? makeText(text) : Value();
        default:
            in.fail(u"Function cancelled");
    }
}

/// [point] [prompt] in either place, as the functions with a base point take them.
struct PointPrompt {
    PointPrompt(Interpreter& in, Args args) {
        for (const Value& arg : args) {
            if (arg.isText()) {
                prompt = arg.text();
            } else if (!arg.isNil()) {
                if (!pointOf(arg, point)) in.badArgument(u"point", arg);
                base = point;
            }
        }
    }
    ads_point point = {0, 0, 0};
    const double* base = nullptr;
    std::u16string prompt;
};

Value initget(Interpreter& in, Args args) {
    int flags = 0;
    std::u16string words;
    for (const Value& arg : args) {
        if (arg.isText()) {
            words = arg.text();
        } else if (!arg.isNil()) {
            flags = integerArg(in, arg);
        }
    }
    if (acedInitGet(flags, words.c_str()) != RTNORM) in.failWith(u"bad initget bits", args[0]);
    return {};
}

Value getpoint(Interpreter& in, Args args) {
    const PointPrompt asked(in, args);
    ads_point point = {0, 0, 0};
    const int status = acedGetPoint(asked.base, asked.prompt.c_str(), point);
    return answer(in, status, pointValue(point));
}

Value getcorner(Interpreter& in, Args args) {
    const PointPrompt asked(in, args);
    if (asked.base == nullptr) in.badArgument(u"point", args[0]);
    ads_point point = {0, 0, 0};
    const int status = acedGetCorner(asked.base, asked.prompt.c_str(), point);
    return answer(in, status, pointValue(point));
}

using Measure = int (*)(const ads_point, const ACHAR*, ads_real*);

Value measure(Interpreter& in, Args args, Measure get) {
    const PointPrompt asked(in, args);
    double value = 0.0;
    const int status = get(asked.base, asked.prompt.c_str(), &value);
    return answer(in, status, Value::real(value));
}

Value getdist(Interpreter& in, Args args) {
    return measure(in, args, acedGetDist);
}

Value getangle(Interpreter& in, Args args) {
    return measure(in, args, acedGetAngle);
}

Value getorient(Interpreter& in, Args args) {
    return measure(in, args, acedGetOrient);
}

Value getreal(Interpreter& in, Args args) {
    double value = 0.0;
    const int status = acedGetReal(promptArg(in, optionalArg(args, 0)).c_str(), &value);
    return answer(in, status, Value::real(value));
}

Value getint(Interpreter& in, Args args) {
    int value = 0;
    const int status = acedGetInt(promptArg(in, optionalArg(args, 0)).c_str(), &value);
    return answer(in, status, Value::integer(value));
}

Value getstring(Interpreter& in, Args args) {
    const bool only_prompt = args.size() == 1 && args[0].isText();
    const bool blanks = !only_prompt && !optionalArg(args, 0).isNil();
    const std::u16string prompt = promptArg(in, optionalArg(args, only_prompt ? 0 : 1));
    ACHAR text[kTextRoom];
    const int status = acedGetString(blanks ? 1 : 0, prompt.c_str(), text);
    return answer(in, status, status == RTNORM ? makeText(text) : Value());
}

Value getkword(Interpreter& in, Args args) {
    ACHAR text[kTextRoom];
    const int status = acedGetKword(promptArg(in, optionalArg(args, 0)).c_str(), text);
    return answer(in, status == RTNORM ? static_cast<int>(RTKWORD) : status, Value());
}

// --- picks --------------------------------------------------------------------------------------

/// What an input function that picks gives instead of an entity: of a miss and of Enter nil.
Value noPick(Interpreter& in, int status) {
    return status == RTERROR ? Value() : answer(in, status, Value());
}

Value entsel(Interpreter& in, Args args) {
    const Value& message = optionalArg(args, 0);
    const std::u16string prompt = promptArg(in, message);
    ads_name name = {0, 0};
    ads_point point = {0, 0, 0};
    const int status = acedEntSel(message.isNil() ? nullptr : prompt.c_str(), name, point);
    if (status != RTNORM) return noPick(in, status);
    return makeList(makeEntityName(name), pointValue(point));
}

/// Result of the functions that pick inside of blocks.
struct NestedPick {
    ads_name name = {0, 0};
    ads_point point = {0, 0, 0};
    ads_matrix matrix = {};
    resbuf* containers = nullptr;

    NestedPick() = default;
    ~NestedPick() { acutRelRb(containers); }
    NestedPick(const NestedPick&) = delete;
    NestedPick& operator=(const NestedPick&) = delete;

    /// (entity point), and for an entity of a block the matrix and the insertions around it.
    Value value(const Value& matrix_rows) const {
        if (containers == nullptr) return makeList(makeEntityName(name), pointValue(point));
        ListBuilder around;
        for (const resbuf* node = containers; node != nullptr; node = node->rbnext)
            around.add(makeEntityName(node->resval.rlname));
        return makeList(makeEntityName(name), pointValue(point), matrix_rows, around.take());
    }
};

/// The axes and the origin of the block, a point each.
Value axesValue(const ads_matrix matrix) {
    const auto column = [&](int i) {
        return makeList(Value::real(matrix[0][i]), Value::real(matrix[1][i]),
                        Value::real(matrix[2][i]));
    };
    return makeList(column(0), column(1), column(2), column(3));
}

Value rowsValue(const ads_matrix matrix) {
    const auto row = [&](int i) {
        return makeList(Value::real(matrix[i][0]), Value::real(matrix[i][1]),
                        Value::real(matrix[i][2]), Value::real(matrix[i][3]));
    };
    return makeList(row(0), row(1), row(2), row(3));
}

Value nentsel(Interpreter& in, Args args) {
    const Value& message = optionalArg(args, 0);
    const std::u16string prompt = promptArg(in, message);
    NestedPick pick;
    const int status = acedNEntSelP(message.isNil() ? nullptr : prompt.c_str(), pick.name,
                                    pick.point, 0, pick.matrix, &pick.containers);
    return status == RTNORM ? pick.value(axesValue(pick.matrix)) : noPick(in, status);
}

Value nentselp(Interpreter& in, Args args) {
    const PointPrompt asked(in, args);
    const bool has_message =
        std::any_of(args.begin(), args.end(), [](const Value& arg) { return arg.isText(); });
    NestedPick pick;
    std::copy(asked.point, asked.point + 3, pick.point);
    const int status =
        acedNEntSelP(has_message ? asked.prompt.c_str() : nullptr, pick.name, pick.point,
                     asked.base != nullptr ? 1 : 0, pick.matrix, &pick.containers);
    return status == RTNORM ? pick.value(rowsValue(pick.matrix)) : noPick(in, status);
}

// --- commands -----------------------------------------------------------------------------------

InputToken tokenOf(Interpreter& in, const Value& value) {
    if (value.isText() && value.text() == u"\\") return InputToken::of(InputToken::Kind::Pause);
    InputToken token;
    if (!answerToken(value, token)) in.failWith(u"bad command argument", value);
    return token;
}

/// Its arguments are evaluated one by one, each when the command has taken those before it.
Value command(Interpreter& in, const Cons* form) {
    if (!runningCommand().empty() && !RestingCommand::exists()) {
        in.fail(u"a command is running: only its own answers can be given");
    }
    const Value* rest = &form->cdr;
    if (rest->isNil()) RestingCommand::cancel();
    for (; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value value = in.eval(rest->cons()->car);
        const InputToken token = tokenOf(in, value);
        if (RestingCommand::feed(token) != CommandEnd::Done) break;
    }
    return {};
}

Value commandS(Interpreter& in, Args args) {
    std::vector<InputToken> tokens;
    for (const Value& value : args)
        tokens.push_back(tokenOf(in, value));
    if (!runningCommand().empty()) in.fail(u"a command is running");
    runCommands(std::move(tokens));
    return {};
}

/// All arguments are evaluated before the first one is given. Gives T unless the command broke off.
Value commandFunction(Interpreter& in, Args args) {
    if (!runningCommand().empty() && !RestingCommand::exists()) return {};
    if (args.empty()) RestingCommand::cancel();
    for (const Value& arg : args) {
        if (RestingCommand::feed(tokenOf(in, arg)) != CommandEnd::Done) return {};
    }
    return in.truth(true);
}

/// Commands have one name here, which the underscore makes the one of every language.
Value commandName(Interpreter& in, Args args) {
    std::u16string_view name = textArg(in, args[0]);
    const Command* found = findCommand(name);
    if (found == nullptr) return {};
    return name.starts_with(u'_') ? makeText(found->name) : makeText(u"_", found->name);
}

Value commandVersion(Interpreter& in, Args args) {
    if (!args.empty()) integerArg(in, args[0]);
    return {};
}

const Builtin kRows[] = {
    {"initget", 0, 2, initget, "(initget [bits] [keywords])",
     "Prepares the next input function: refused answers and keywords."},
    {"getpoint", 0, 2, getpoint, "(getpoint [base] [prompt])", "Asks for a point."},
    {"getcorner", 1, 2, getcorner, "(getcorner base [prompt])",
     "Asks for the corner of a window that starts at a point."},
    {"getdist", 0, 2, getdist, "(getdist [base] [prompt])",
     "Asks for a distance, typed or by points."},
    {"getangle", 0, 2, getangle, "(getangle [base] [prompt])",
     "Asks for an angle in radians, typed or by points."},
    {"getorient", 0, 2, getorient, "(getorient [base] [prompt])",
     "Asks for a direction in radians from the x axis."},
    {"getreal", 0, 1, getreal, "(getreal [prompt])", "Asks for a number."},
    {"getint", 0, 1, getint, "(getint [prompt])", "Asks for an integer."},
    {"getstring", 0, 2, getstring, "(getstring [blanks] [prompt])",
     "Asks for a text; with blanks not nil it may hold blanks."},
    {"getkword", 0, 1, getkword, "(getkword [prompt])", "Asks for a keyword of initget."},
    {"entsel", 0, 1, entsel, "(entsel [prompt])",
     "Asks for an entity: (entity point); nil for a miss (ERRNO 7) and for Enter (52)."},
    {"nentsel", 0, 1, nentsel, "(nentsel [prompt])",
     "Asks for the innermost entity: (entity point), in a block (entity point (x y z origin) "
     "(insertion ...)), innermost first."},
    {"nentselp", 0, 2, nentselp, "(nentselp [prompt] [point])",
     "The same, or without asking at a point; the way to the world is a matrix of four rows."},
    {"command", Operands::Evaluated, command, "(command [argument ...])",
     "Runs commands and answers their prompts; without arguments cancels; gives nil."},
    {"vl-cmdf", 0, kAnyNumber, commandFunction, "(vl-cmdf [argument ...])",
     "As command, with all arguments evaluated first; T unless the command broke off."},
    {"getcname", 1, 1, commandName, "(getcname name)",
     "Name of a command with an underscore, or without for one that has it; nil for none."},
    {"initcommandversion", 0, 1, commandVersion, "(initcommandversion [version])",
     "Chooses another version of the next command on a seat; here each has one."},
    {"command-s", 1, kAnyNumber, commandS, "(command-s argument ...)",
     "Runs commands that ask for no more than what is given; gives nil."},
};

}  // namespace

bool answerToken(const Value& value, InputToken& token) {
    ads_point point = {0, 0, 0};
    if (value.isText()) {
        token = InputToken::ofText(value.text());
    } else if (value.isInteger()) {
        token = InputToken::ofInteger(value.integer());
    } else if (value.isReal()) {
        token = InputToken::ofReal(value.real());
    } else if (value.isNil()) {
        token = InputToken::of(InputToken::Kind::Cancel);
    } else if (value.is(Kind::EntityName)) {
        token = InputToken::ofName(InputToken::Kind::Entity, value.as<EntityName>()->name);
    } else if (value.is(Kind::SelectionSet)) {
        token = InputToken::ofName(InputToken::Kind::Set, value.as<SelectionSet>()->name);
    } else if (pointOf(value, point)) {
        token = InputToken::ofPoint(point, value.cons()->cdr.cons()->cdr.isNil());
    } else {
        return false;
    }
    return true;
}

std::span<const Builtin> inputBuiltins() {
    return kRows;
}

}  // namespace host::lisp
