#include "RecordClasses.h"

#include "tests/support/ProcessCounters.h"
#include "tests/support/Soak.h"

#include <cstdio>

// Creates and releases many objects. SOAK_OBJECTS is the number per class.

namespace {

ComPtr<IClassFactory> ClassObject(const RecordClass& of) {
    ComPtr<IClassFactory> factory;
    REQUIRE_HR(
        CoGetClassObject(of.classId, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.PutVoid()),
        S_OK);
    return factory;
}

/// Creates an object, round-trips its XML and makes it refuse a text.
void UseOne(IClassFactory* factory, const RecordClass& of) {
    ComPtr<IUnknown> record;
    UniqueBstr own;
    if (factory->CreateInstance(nullptr, of.interfaceId, record.PutVoid()) != S_OK ||
        of.getXml(record.Get(), own.Put()) != S_OK || of.putXml(record.Get(), own.Get()) != S_OK)
        FAIL("an object of " << Narrow(of.name) << " cannot be created or refuses its own text");
    // A document without the record's element is refused or resets the record; neither may leak.
    static const UniqueBstr wrong(L"<Wrong");
    if (SUCCEEDED(of.putXml(record.Get(), wrong.Get())))
        FAIL(Narrow(of.name) << " accepts malformed XML");
}

void UseMany(const RecordClass& of, int count) {
    const auto factory = ClassObject(of);
    for (int i = 0; i < count; ++i)
        UseOne(factory.Get(), of);
    SetErrorInfo(0, nullptr);
}

} // namespace

TEST_CASE("Objects_of_every_class_are_created_and_released_without_growth") {
    const int count = SoakCount("SOAK_OBJECTS", 200);
    for (const RecordClass& each : RecordClasses()) {
        INFO(Narrow(each.name));
        UseMany(each, 100);
        const ProcessCounters before = ProcessCounters::Now();
        UseMany(each, count);
        const ProcessCounters after = ProcessCounters::Now();
        std::printf("%d objects of %ls: %s\n", count, each.name, Growth(before, after).c_str());
        CHECK_NO_GROWTH(before, after, count);
        CHECK_HR(AskLibraryToUnload(), S_OK);
    }
}
