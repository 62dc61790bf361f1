#include "com/connection_point.h"

#include "automation/classes/engine_object.h"
#include "com/arguments.h"
#include "com/failure.h"

#include <utility>
#include <vector>

namespace qx::com {
namespace {

using automation::Arguments;
using automation::EventProvider;
using automation::Variant;

/// A sink of the host.
class HostSink final : public automation::EventSink {
public:
  HostSink(std::shared_ptr<Apartment> apartment, Pointer<IDispatch> sink)
      : apartment_(std::move(apartment)), sink_(std::move(sink)) {}

  IDispatch* dispatch() const { return sink_.get(); }

  void raise(automation::DispatchId event, const std::vector<Variant>& values) override {
    // It may disconnect while it is called.
    const Pointer<IDispatch> sink = sink_;
    OutgoingArguments outgoing(apartment_, Arguments{values, {}}, false);
    OwnedVariant ignored;
    EXCEPINFO details{};
    const HRESULT code = sink->Invoke(event, IID_NULL, LOCALE_SYSTEM_DEFAULT, DISPATCH_METHOD,
                                      outgoing.parameters(), ignored.get(), &details, nullptr);
    SysFreeString(details.bstrSource);
    SysFreeString(details.bstrDescription);
    SysFreeString(details.bstrHelpFile);
    // A script need not handle every event.
    if (code != DISP_E_MEMBERNOTFOUND) require(code, "Der Empfänger eines Ereignisses meldet einen Fehler.");
  }

private:
  std::shared_ptr<Apartment> apartment_;
  Pointer<IDispatch> sink_;
};

template <class Interface, class Item>
class List final : public Counted, public Interface {
public:
  explicit List(std::vector<Item> items, std::size_t at = 0) : items_(std::move(items)), at_(at) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, __uuidof(Interface))) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return this->retain(); }
  ULONG STDMETHODCALLTYPE Release() override { return this->drop(); }

  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = items_.size() - at_;
    at_ += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    at_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(Interface** copy) override {
    if (copy == nullptr) return E_POINTER;
    return guarded([&]() -> HRESULT {
      *copy = new List(items_, at_);
      return S_OK;
    });
  }

protected:
  std::vector<Item> items_;
  std::size_t at_;

public:
  HRESULT STDMETHODCALLTYPE Next(ULONG count, decltype(std::declval<Item>().give())* items,
                                 ULONG* fetched) override {
    if (items == nullptr || (count > 1 && fetched == nullptr)) return E_POINTER;
    ULONG given = 0;
    while (given < count && at_ < items_.size()) items[given++] = items_[at_++].give();
    if (fetched != nullptr) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
};

struct PointItem {
  Pointer<IConnectionPoint> point;
  IConnectionPoint* give() const { return Pointer<IConnectionPoint>(point).release(); }
};

struct ConnectionItem {
  Pointer<IDispatch> sink;
  DWORD cookie = 0;
  CONNECTDATA give() const { return {Pointer<IDispatch>(sink).release(), cookie}; }
};

class ConnectionPoint final : public Counted, public IConnectionPoint {
public:
  ConnectionPoint(std::shared_ptr<Apartment> apartment, Pointer<IConnectionPointContainer> container,
                  automation::ObjectPointer content, REFIID events)
      : apartment_(std::move(apartment)), container_(std::move(container)), content_(std::move(content)),
        events_(events) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IConnectionPoint)) return E_NOINTERFACE;
    *object = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return retain(); }
  ULONG STDMETHODCALLTYPE Release() override { return drop(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* id) override {
    if (id == nullptr) return E_POINTER;
    *id = events_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override {
    if (container == nullptr) return E_POINTER;
    *container = Pointer<IConnectionPointContainer>(container_).release();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
    if (sink == nullptr || cookie == nullptr) return E_POINTER;
    *cookie = 0;
    return guarded([&]() -> HRESULT {
      apartment_->requireThread();
      auto dispatch = query<IDispatch>(sink, events_);
      if (!dispatch) dispatch = query<IDispatch>(sink, IID_IDispatch);
      if (!dispatch) return CONNECT_E_CANNOTCONNECT;
      *cookie = provider().advise(std::make_shared<HostSink>(apartment_, std::move(dispatch)));
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
    return guarded([&]() -> HRESULT {
      apartment_->requireThread();
      return provider().unadvise(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
    });
  }
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override {
    if (connections == nullptr) return E_POINTER;
    return guarded([&]() -> HRESULT {
      apartment_->requireThread();
      std::vector<ConnectionItem> items;
      for (const auto& [cookie, sink] : provider().sinks())
        if (const auto* const ofHost = dynamic_cast<const HostSink*>(sink.get()))
          items.push_back({Pointer<IDispatch>(ofHost->dispatch()), cookie});
      *connections = new List<IEnumConnections, ConnectionItem>(std::move(items));
      return S_OK;
    });
  }

private:
  EventProvider& provider() const { return dynamic_cast<EventProvider&>(*content_); }

  std::shared_ptr<Apartment> apartment_;
  Pointer<IConnectionPointContainer> container_;
  automation::ObjectPointer content_;
  IID events_;
};

} // namespace

IConnectionPoint* makeConnectionPoint(std::shared_ptr<Apartment> apartment,
                                      Pointer<IConnectionPointContainer> container,
                                      automation::ObjectPointer content, REFIID events) {
  return new ConnectionPoint(std::move(apartment), std::move(container), std::move(content), events);
}

IEnumConnectionPoints* makeConnectionPointList(IConnectionPoint* point) {
  return new List<IEnumConnectionPoints, PointItem>({{Pointer<IConnectionPoint>(point)}});
}

} // namespace qx::com
