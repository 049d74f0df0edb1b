/// Lisp values as answers to prompts.
#ifndef HOST_LISP_INPUT_TOKEN_H
#define HOST_LISP_INPUT_TOKEN_H

#include "edit/input.h"
#include "lisp/value.h"

namespace host::lisp {

/// The answer that a value stands for: texts, numbers, points, entity names, selection sets, nil
/// for a cancel. @return false for another one
bool answerToken(const Value& value, InputToken& token);

}  // namespace host::lisp

#endif
