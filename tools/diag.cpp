/// The trace facility. A line is built as UTF-8 and written at once, so that the file is complete
/// when the program dies right after it.
#include "kz_tls21an/diag.h"

#include <cstdio>
#include <new>
#include <string>
#include <string_view>

#include "kz_tls21an/str.h"
#include "kz_tls21an/text.h"
#include "open_file.h"

kz_Char KZ_DiagMsgBuf[KZ_DIAG_BUFFER_SIZE];
int16_t KZ_DiagLevel = -1;
int32_t KZ_DiagCondition = 0;

namespace {

constexpr size_t fileNameLimit = 255;

// Callers that were compiled without the inline functions find them in the library.
[[gnu::used]] constexpr auto getLevel = &kz_Diag_getLevel;
[[gnu::used]] constexpr auto getCondition = &kz_Diag_getCondition;

int currentOption = KZ_DIAG_OUTPUT_STDERR;
std::FILE* currentFile = nullptr;
kz_Char currentFileName[fileNameLimit + 1];
kz_DiagHandler currentHandler = nullptr;

void closeFile() {
    if (currentFile) std::fclose(currentFile);
    currentFile = nullptr;
    currentFileName[0] = 0;
}

void writeLine(std::FILE* file, std::u16string_view message, const char* source, int line) {
    std::string out = source ? source : "";
    out += '(' + std::to_string(line) + "): ";
    kz::appendUtf8(out, message);
    out += '\n';
    std::fwrite(out.data(), 1, out.size(), file);
    std::fflush(file);
}

void putLine(std::u16string_view message, const char* source, int line) {
    while (!message.empty() && message.back() == '\n')
        message.remove_suffix(1);
    if (currentOption == KZ_DIAG_OUTPUT_HANDLER) {
        if (currentHandler) currentHandler(std::u16string(message).c_str(), source, line);
    } else if (currentOption == KZ_DIAG_OUTPUT_STDERR) {
        writeLine(stderr, message, source, line);
    } else if (currentFile) {
        writeLine(currentFile, message, source, line);
    }
}

void putText(int count, const kz_Char* buffer, const char* source, int line) {
    try {
        const size_t length =
            count < 0 || !buffer ? kz_Str_len(buffer) : static_cast<size_t>(count);
        putLine(std::u16string_view(buffer, length), source, line);
    } catch (const std::bad_alloc&) {
        // a trace that can't be written is lost: tracing never fails its caller
    }
}

int selectOutput(int option, const kz_Char* fileName) {
    if (option < KZ_DIAG_OUTPUT_NONE || option > KZ_DIAG_OUTPUT_HANDLER) return 0;
    const bool hasFile = option == KZ_DIAG_OUTPUT_FILE || option == KZ_DIAG_OUTPUT_APPEND;
    std::FILE* file = nullptr;
    if (hasFile) {
        if (!fileName || fileName[0] == 0) return 0;
        try {
            file = kz::openFile(fileName, option == KZ_DIAG_OUTPUT_FILE ? "wb" : "ab");
        } catch (const std::bad_alloc&) {
            return 0;
        }
        if (!file) return 0;
    }
    closeFile();
    currentOption = option;
    currentFile = file;
    if (hasFile) kz_Str_ncpy(currentFileName, fileName, fileNameLimit);
    return 1;
}

}  // namespace

int16_t kz_Diag_setLevel(int16_t level) {
    const int16_t before = KZ_DiagLevel;
    KZ_DiagLevel = level;
    return before;
}

int32_t kz_Diag_setCondition(int32_t mask) {
    const int32_t before = KZ_DiagCondition;
    KZ_DiagCondition = mask;
    return before;
}

void kz_tls_Diag_putOutputMsg(const kz_Char* message, const char* source, int line) {
    putText(-1, message, source, line);
}

void kz_tls_Diag_putOutput(int count, const kz_Char* buffer, const char* source, int line) {
    putText(count, buffer, source, line);
}

void kz_Diag_putOutputMsg(const kz_Char* message, const char* source, int line) {
    putText(-1, message, source, line);
}

void kz_Diag_putOutput(int count, const kz_Char* buffer, const char* source, int line) {
    putText(count, buffer, source, line);
}

kz_Char* kz_Diag_getDiagMsgBuf(void) {
    return KZ_DiagMsgBuf;
}

int kz_Diag_getOutput(kz_Char* buffer) {
    kz_Str_ncpy(buffer, currentFileName, fileNameLimit);
    return currentOption;
}

int kz_tls_Diag_setOutput(int option, const kz_Char* fileName) {
    return selectOutput(option, fileName);
}

int kz_Diag_setOutput(int option, const kz_Char* fileName) {
    return selectOutput(option, fileName);
}

void kz_Diag_disable(void) {
    KZ_DiagLevel = -1;
    KZ_DiagCondition = 0;
    selectOutput(KZ_DIAG_OUTPUT_STDERR, nullptr);
}

kz_DiagHandler kz_Diag_setHandler(kz_DiagHandler handler) {
    const kz_DiagHandler before = currentHandler;
    currentHandler = handler;
    return before;
}
