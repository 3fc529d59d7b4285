// The end of objects: what is made of the frame's templates counts the references that come during
// destruction.

#include "JobObjects/frame/ComObject.h"

#include <catch2/catch.hpp>

#include <atomic>
#include <functional>

namespace {

/// What an implementation class is to the templates, without a record behind it.
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

/// Releases the only reference to an object that is looked at while it is destroyed; how often it was
/// destroyed.
int DestructionsOf(IUnknown* object) {
    int destructions = 0;
    Counted::destroyed = [&] {
        if (++destructions > 1)
            return; // a last release inside the destruction
        object->AddRef();
        CHECK(object->Release() != 0);
    };
    CHECK(object->Release() == 0);
    Counted::destroyed = nullptr;
    return destructions;
}

} // namespace

TEST_CASE("ReferenceCount_starts_with_one_reference_and_ends_once") {
    ReferenceCount<> plain;
    CHECK(plain.Add() == 2);
    CHECK(plain.Release() == 1);
    CHECK(plain.Release() == 0);
    CHECK(plain.Add() > 1);
    CHECK(plain.Release() != 0);

    ReferenceCount<std::atomic<ULONG>> shared; // that of class objects
    CHECK(shared.Add() == 2);
    CHECK(shared.Release() == 1);
    CHECK(shared.Release() == 0);
    CHECK(shared.Add() > 1);
    CHECK(shared.Release() != 0);
}

TEST_CASE("ComObject_is_destroyed_once_whatever_is_released_meanwhile") {
    CHECK(DestructionsOf(new ComObject<Counted>) == 1);
}

TEST_CASE("AggregatedObject_is_destroyed_once_whatever_is_released_meanwhile") {
    ComObject<Counted>* const outer = new ComObject<Counted>;
    CHECK(DestructionsOf(new AggregatedObject<Counted>(outer)) == 1);
    CHECK(outer->Release() == 0);
}
