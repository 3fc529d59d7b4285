#pragma once

#include <string>
#include <vector>

/// The expected type library, written independently of the interface definition, so that an accidental change
/// of the binary contract fails a test.

/// One interface. A member row reads
///     slot | DISPID | get, put or method | name | parameters or "(none)"
/// with the parameters "[flags] type name" separated by "; ". The name is absent where it is not stored.
struct ExpectedInterface {
    std::string name;
    std::string iid;
    unsigned entries;
    std::vector<std::string> rows;
};

struct ExpectedClass {
    std::string name;
    std::string clsid;
    std::string defaultInterface;
    std::string help;
};

const std::vector<ExpectedInterface>& expectedInterfaces();
const ExpectedInterface& expectedInterface(const std::string& name);
const std::vector<ExpectedClass>& expectedClasses();
