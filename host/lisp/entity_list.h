/// Entity lists: the passage between chains of DXF groups and association lists.
///
/// A group becomes a dotted pair (code . value); a point a list (code x y z), or (code x y) where
/// the entity keeps no z; XDATA the element (-3 ("APP" group ...) ...).
#ifndef HOST_LISP_ENTITY_LIST_H
#define HOST_LISP_ENTITY_LIST_H

#include "lisp/chain.h"

namespace host::lisp {

/// The list of a chain; nil for NULL.
Value entityList(Interpreter& in, const resbuf* chain);
/// Appends the groups of an entity list. Ends in "bad DXF group: X" for what can't be one.
void addEntityList(Interpreter& in, ChainBuilder& chain, const Value& list);

}  // namespace host::lisp

#endif
