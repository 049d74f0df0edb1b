/// The trace output under the names that the tools library exports too. Programs may find either
/// library's first, the tools library itself included, so these go on to names that lead only
/// there.
#include "kz/kz_diag.h"

void kz_Diag_putOutput(int count, const kz_Char* buffer, const char* source, int line) {
    kz_tls_Diag_putOutput(count, buffer, source, line);
}

void kz_Diag_putOutputMsg(const kz_Char* message, const char* source, int line) {
    kz_tls_Diag_putOutputMsg(message, source, line);
}

int kz_Diag_setOutput(int option, const kz_Char* fileName) {
    return kz_tls_Diag_setOutput(option, fileName);
}
