// What belongs to one thread that creates objects of ours.
#pragma once

#include "automation/classes/component.h"
#include "com/objects.h"
#include "com/windows_headers.h"

#include <functional>
#include <memory>
#include <string_view>

namespace qx::com {

class Apartment;

/// What a component stands on: ports, database, ERP, and what it makes of the host's objects. Owned by its
/// apartment.
class Surroundings {
public:
  Surroundings() = default;
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;
  virtual ~Surroundings() = default;
  virtual Environment& environment() = 0;
  virtual Database& database() = 0;
  virtual automation::HostObjects& hostObjects() = 0;
};

/// Makes the surroundings of a new apartment.
using MakeSurroundings = std::function<std::unique_ptr<Surroundings>(Apartment&)>;

/// The component of one thread. Its objects share the connection and the current order with each other but
/// not with those of other threads, so none of them needs a lock. It ends with the last of its objects.
class Apartment final : public ObjectMap {
public:
  /// That of the calling thread; made when there is none.
  static std::shared_ptr<Apartment> ofThread(const MakeSurroundings& make);

  explicit Apartment(const MakeSurroundings& make);
  ~Apartment() override;

  /// Raises `AutomationError` on any other thread.
  void requireThread() const;
  /// A new object of a public class, with one reference.
  Pointer<IDispatch> create(std::string_view className);
  /// Whether a component is known under a ProgID.
  static bool isRegistered(std::string_view progId);
  /// An object that another component offers under its ProgID. Raises `AutomationError` 429, which names it.
  automation::ObjectPointer createForeign(std::string_view progId);

private:
  IDispatch* make(const automation::ObjectPointer& object) override;

  DWORD thread_;
  std::unique_ptr<Surroundings> surroundings_;
  std::weak_ptr<automation::Component> component_; ///< kept by its objects
};

} // namespace qx::com
