// Where the host's sinks connect to our events.
#pragma once

#include "com/apartment.h"
#include "com/pointer.h"
#include "com/windows_headers.h"

#include <memory>

namespace qx::com {

/// The connection point of an object's events, with one reference; it keeps the object alive.
IConnectionPoint* makeConnectionPoint(std::shared_ptr<Apartment> apartment,
                                      Pointer<IConnectionPointContainer> container,
                                      automation::ObjectPointer content, REFIID events);
/// A list of one, with one reference.
IEnumConnectionPoints* makeConnectionPointList(IConnectionPoint* point);

} // namespace qx::com
