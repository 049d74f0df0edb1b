/// kz: opens drawings and evaluates AutoLISP. One row for each command; without a command the
/// console starts.
#include "command.h"
#include "progress_bar.h"

namespace {

const char kConsole[] =
    "Without a command: a console on FILE, or on a new drawing. When standard input is no "
    "terminal,\n"
    "expressions are read from it, and the first error ends the program. In the console, qsave\n"
    "and saveas FILE save the drawing, quit leaves.\n";
const char kStatus[] =
    "Exit status: 0 done, 1 a Lisp error or findings, 2 wrong usage, 3 a file that can't be read "
    "or written.";

}  // namespace

int main(int argc, char** argv) {
    const console::Program program = {
        "kz",
        "kz - AutoLISP and the kz_zaglaid library on DXF drawings",
        "kz " KZ_VERSION,
        kConsole,
        kStatus,
        console::defineConsole,
        {
            {"eval", "Evaluate expressions on a drawing and print the value of each",
             console::defineEval},
            {"run", "Load Lisp scripts on a drawing", console::defineRun},
            {"info", "Tell what is in drawings, and what is odd about them", console::defineInfo},
            {"convert", "Save a drawing as another version", console::defineConvert},
            {"plot", "Draw a picture of a drawing", console::definePlot},
            {"groups", "List the groups of a drawing", console::defineGroups},
            {"fields", "List the fields that applications keep on entities", console::defineFields},
            {"help", "Tell what the manual says of functions and commands", console::defineHelp},
            {"check", "Check the groups of a drawing, and repair them", console::defineCheck},
        }};
    const console::ProgressBar progress;
    return console::parseAndRun(argc, argv, program);
}
