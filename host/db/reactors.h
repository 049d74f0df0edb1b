/// The groups in front of an object's class that name its owner and its reactors: the objects that
/// hear of what happens to it, its dictionary or the groups that an entity is in. Reactors stand in
/// a group in braces, {ACAD_REACTORS.
#ifndef HOST_DB_REACTORS_H
#define HOST_DB_REACTORS_H

#include "db/tags.h"

namespace host {

/// What stands in front of the reactors, and of the dictionary of what others keep with the object.
inline constexpr std::u16string_view kReactors = u"{ACAD_REACTORS";
inline constexpr std::u16string_view kExtension = u"{ACAD_XDICTIONARY";

/// Index of an object's owner group, or where it belongs: behind the groups in braces, which hold
/// 330 groups of their own.
size_t ownerPlace(const Tags& tags);
/// True when the owner group stands at its place.
bool hasOwnerGroup(const Tags& tags, size_t place);
void setOwnerGroup(Tags& tags, uint64_t owner);

/// Enters a reactor, by its handle, unless it is there.
void addReactor(Tags& tags, uint64_t handle);
void removeReactor(Tags& tags, uint64_t handle);
/// True for an object that lists this reactor.
bool hasReactor(const Tags& tags, uint64_t handle);

}  // namespace host

#endif
