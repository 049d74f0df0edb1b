/// Chains and field lists as short texts, and the fixture of the tests on chains.
#include "chain_text.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "kz_tls21an/text.h"

namespace test {
namespace {

std::string traced_lines;

void collect(const kz_Char* message, const char* /*source*/, int /*line*/) {
    if (!traced_lines.empty()) traced_lines += '\n';
    traced_lines += narrow(message);
}

std::vector<double> numbers(const std::string& text) {
    std::vector<double> values;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, ',');)
        values.push_back(std::stod(part));
    return values;
}

/// The kind of a group's value. Records have integers in codes that the library gives no kind.
int kindOf(int code) {
    return code >= 90 && code < 100 ? static_cast<int>(KZ_RB_LONG) : kz_Rb_type(code);
}

/// A node of this code with the value written in the text.
void appendGroup(resbuf** list, int code, const std::string& value) {
    const std::u16string text = wide(value);
    int64_t name[2] = {};
    std::vector<double> point;
    const auto number = static_cast<int32_t>(std::atoi(value.c_str()));
    const auto short_number = static_cast<int16_t>(number);
    const double real = std::atof(value.c_str());
    switch (kindOf(code)) {
        case KZ_RB_STRING:
        case KZ_RB_HANDLE:
        case 1002:
            kz_Rb_insEnd(list, code, text.c_str());
            break;
        case KZ_RB_SHORT:
            kz_Rb_insEnd(list, code, &short_number);
            break;
        case KZ_RB_LONG:
            kz_Rb_insEnd(list, 1071, &number);
            kz_Rb_getLast(*list)->restype = static_cast<int16_t>(code);
            break;
        case KZ_RB_REAL:
            kz_Rb_insEnd(list, code, &real);
            break;
        case KZ_RB_POINT:
            point = numbers(value);
            point.resize(3);
            kz_Rb_insEnd(list, code, point.data());
            break;
        case KZ_RB_ENAME:
        case KZ_RB_SELSET:
            name[0] = number;
            kz_Rb_insEnd(list, code, name);
            break;
        default:
            kz_Rb_addTagToList(list, code);
            break;
    }
}

/// Result type of a token that is no group.
int typeOf(const std::string& token) {
    if (token == "(") return RTLB;
    if (token == ")") return RTLE;
    if (token == ".)") return RTDOTE;
    if (token == "T") return RTT;
    if (token == "nil") return RTNIL;
    if (token.front() == '"') return RTSTR;
    if (token.front() == '<') return numbers(token.substr(1)).size() == 2 ? RTPOINT : RT3DPOINT;
    if (token.back() == 'L') return RTLONG;
    return token.find('.') == std::string::npos ? RTSHORT : RTREAL;
}

void appendToken(resbuf** list, const std::string& token) {
    if (token.front() != '"') {
        const size_t colon = token.find(':');
        const std::string word = token.substr(0, colon);
        if (colon != std::string::npos) {
            int code = word == "ename" ? RTENAME : RTPICKS;
            if (word != "ename" && word != "set") code = std::atoi(word.c_str());
            appendGroup(list, code, token.substr(colon + 1));
            return;
        }
    }
    const bool enclosed = token.front() == '"' || token.front() == '<';
    appendGroup(list, typeOf(token), enclosed ? token.substr(1, token.size() - 2) : token);
}

/// Cuts a text at its blanks, but not inside quotes.
std::vector<std::string> tokens(const std::string& text) {
    std::vector<std::string> parts;
    std::string part;
    bool quoted = false;
    for (const char c : text + ' ') {
        if (c == '"') quoted = !quoted;
        if (c != ' ' || quoted) {
            part += c;
        } else if (!part.empty()) {
            parts.push_back(part);
            part.clear();
        }
    }
    return parts;
}

std::string shortNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

std::string point(const double* at, int count) {
    std::string text = shortNumber(at[0]);
    for (int i = 1; i < count; ++i)
        text += ',' + shortNumber(at[i]);
    return text;
}

std::string valueOf(const resbuf& node) {
    const ads_u_val& value = node.resval;
    switch (kindOf(node.restype)) {
        case KZ_RB_STRING:
        case KZ_RB_HANDLE:
        case 1002:
            return narrow(value.rstring);
        case KZ_RB_SHORT:
            return node.restype == -3 ? "" : std::to_string(value.rint);
        case KZ_RB_LONG:
            return std::to_string(value.rlong);
        case KZ_RB_REAL:
            return shortNumber(value.rreal);
        case KZ_RB_POINT:
            return point(value.rpoint, node.restype == RTPOINT ? 2 : 3);
        case KZ_RB_ENAME:
        case KZ_RB_SELSET:
            return std::to_string(value.rlname[0]);
        default:
            return "";
    }
}

std::string showNode(const resbuf& node) {
    const std::string value = valueOf(node);
    switch (node.restype) {
        case RTLB:
            return "(";
        case RTLE:
            return ")";
        case RTDOTE:
            return ".)";
        case RTT:
            return "T";
        case RTNIL:
            return "nil";
        case RTSTR:
            return '"' + value + '"';
        case RTPOINT:
        case RT3DPOINT:
            return '<' + value + '>';
        case RTLONG:
            return value + 'L';
        case RTSHORT:
            return value;
        case RTREAL:
            return value.find_first_of(".e") == std::string::npos ? value + ".0" : value;
        case RTENAME:
            return "ename:" + value;
        case RTPICKS:
            return "set:" + value;
        default:
            return std::to_string(node.restype) + ':' + value;
    }
}

std::string showCell(const kz_FldNode& cell);

std::string showCells(kz_LnkList* cells) {
    std::string text;
    for (kz_LnkList_start(cells); kz_LnkList_eol(cells) == 0; kz_LnkList_next(cells)) {
        if (!text.empty()) text += ' ';
        text += showCell(*static_cast<const kz_FldNode*>(kz_LnkList_getCurr(cells)));
    }
    return '[' + text + ']';
}

std::string showCell(const kz_FldNode& cell) {
    const kz_FldValue& value = cell.value;
    const std::string letter(1, static_cast<char>(cell.type));
    switch (cell.type) {
        case KZ_FLD_CHAR:
        case KZ_FLD_HANDLE:
            return letter + '=' + narrow(value.text);
        case KZ_FLD_INT:
            return letter + '=' + std::to_string(value.integer);
        case KZ_FLD_LONG:
            return letter + '=' + std::to_string(value.longInt);
        case KZ_FLD_REAL:
            return letter + '=' + shortNumber(value.real);
        case KZ_FLD_POINT:
        case KZ_FLD_MPOINT:
        case KZ_FLD_DPOINT:
            return letter + '=' + point(&value.point.x, 3);
        case KZ_FLD_VECTOR:
            return letter + '=' + point(&value.vector.x, 3);
        case KZ_FLD_LIST:
            return letter + showCells(value.list);
        default:
            return letter;
    }
}

}  // namespace

std::string narrow(const kz_Char* text) {
    return text == nullptr ? "(null)" : kz::toUtf8(text);
}

std::u16string wide(const std::string& text) {
    return kz::toUtf16(text);
}

resbuf* chain(const std::string& text) {
    resbuf* list = nullptr;
    for (const std::string& token : tokens(text))
        appendToken(&list, token);
    return list;
}

std::string show(const resbuf* chain) {
    std::string text;
    for (; chain != nullptr; chain = chain->rbnext) {
        if (!text.empty()) text += ' ';
        text += showNode(*chain);
    }
    return text;
}

std::string show(kz_FldList* list) {
    if (list == nullptr) return "(null)";
    std::string text;
    for (kz_FldList_start(list); kz_FldList_eol(list) == 0; kz_FldList_next(list)) {
        if (!text.empty()) text += ' ';
        const kz_FldNode* field = kz_FldList_curr(list);
        text += narrow(field->name) + ':' + showCell(*field);
    }
    return text;
}

std::string take(resbuf* chain) {
    std::string text = show(chain);
    kz_ResBuf_release(chain);
    return text;
}

std::string take(kz_FldList* list) {
    std::string text = show(list);
    kz_FldList_destroy(list);
    return text;
}

void ChainTest::SetUp() {
    nodes_ = host::resbufCount();
    traced_lines.clear();
}

void ChainTest::TearDown() {
    kz_Diag_setHandler(nullptr);
    kz_Diag_disable();
    EXPECT_EQ(host::resbufCount(), nodes_) << "result-buffer nodes were not released";
}

void ChainTest::traceAt(int16_t level, int32_t mask) {
    kz_Diag_setHandler(collect);
    kz_Diag_setOutput(KZ_DIAG_OUTPUT_HANDLER, nullptr);
    kz_Diag_setLevel(level);
    kz_Diag_setCondition(mask);
}

std::string ChainTest::traced() {
    std::string lines;
    lines.swap(traced_lines);
    return lines;
}

}  // namespace test
