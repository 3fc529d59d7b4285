// An object can be referenced and released during its destruction, which must not destroy it again.

#include "JobObjects/frame/ComObject.h"

#include <catch2/catch.hpp>

#include <atomic>
#include <functional>

namespace {

/// A minimal implementation class for the frame's templates.
class Counted : public IUnknown {
public:
    HRESULT FindInterface(REFIID, void** object) noexcept {
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return FindInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return m_references.Add(); }
    ULONG STDMETHODCALLTYPE Release() override { return m_references.Release(); }

    static inline std::function<void()> destroyed;

protected:
    virtual ~Counted() {
        if (destroyed)
            destroyed();
    }

private:
    ReferenceCount<> m_references;
};

/// Releases the only reference to an object, references it again during its destruction, and returns the
/// number of destructions.
int DestructionsOf(IUnknown* object) {
    int destructions = 0;
    Counted::destroyed = [&] {
        if (++destructions > 1)
            return; // destroyed again by the release below
        object->AddRef();
        CHECK(object->Release() != 0);
    };
    CHECK(object->Release() == 0);
    Counted::destroyed = nullptr;
    return destructions;
}

} // namespace

TEST_CASE("ReferenceCount_starts_at_one_and_reaches_zero_once") {
    ReferenceCount<> plain;
    CHECK(plain.Add() == 2);
    CHECK(plain.Release() == 1);
    CHECK(plain.Release() == 0);
    CHECK(plain.Add() > 1);
    CHECK(plain.Release() != 0);

    ReferenceCount<std::atomic<ULONG>> shared; // as in class objects
    CHECK(shared.Add() == 2);
    CHECK(shared.Release() == 1);
    CHECK(shared.Release() == 0);
    CHECK(shared.Add() > 1);
    CHECK(shared.Release() != 0);
}

TEST_CASE("ComObject_referenced_during_destruction_is_destroyed_once") {
    CHECK(DestructionsOf(new ComObject<Counted>) == 1);
}

TEST_CASE("AggregatedObject_referenced_during_destruction_is_destroyed_once") {
    auto* const outer = new ComObject<Counted>;
    CHECK(DestructionsOf(new AggregatedObject<Counted>(outer)) == 1);
    CHECK(outer->Release() == 0);
}
