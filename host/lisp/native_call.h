/// Calls of functions that native modules export, and the passage of values between Lisp and chains
/// of result buffers.
#ifndef HOST_LISP_NATIVE_CALL_H
#define HOST_LISP_NATIVE_CALL_H

#include "lisp/interpreter.h"

namespace host::lisp {

/// Calls a native function. Its arguments lie in the call frame for acedGetArgs.
/// @return what it set with acedRet; nil, with Interpreter::nativeGaveNothing set, when it set
/// nothing
Value callNative(Interpreter& in, const External& external, Args args);
/// Value of one node that is no list marker, by its kind.
Value nodeValue(Interpreter& in, const resbuf& node);
/// Value of a chain: its one node, or its first list.
Value chainValue(Interpreter& in, const resbuf* chain);

}  // namespace host::lisp

#endif
