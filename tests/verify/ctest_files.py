"""Reads the tests of a build from the files that CMake writes for ctest."""

import re
from dataclasses import dataclass, field
from pathlib import Path

ARGUMENT = re.compile(r'\[(=*)\[(.*?)\]\1\]|"((?:\\.|[^"\\])*)"|([^\s()"]+)', re.S)
CALL = re.compile(r'^ *(\w+)\(((?:\[=*\[.*?\]=*\]|"(?:\\.|[^"\\])*"|[^()"])*)\)$', re.S | re.M)


@dataclass
class Test:
    name: str
    command: list
    properties: dict = field(default_factory=dict)
    catch_version: str = "" # of a Catch program, whose test cases are separate tests of ctest


def calls(path):
    """The commands of a CMake file with their arguments."""
    text = re.sub(r"^#.*\n", "", path.read_text(encoding="utf-8"), flags=re.M)
    for call in CALL.finditer(text):
        yield call[1], [_value(each) for each in ARGUMENT.finditer(call[2])]


def _value(argument):
    if argument[2] is not None:
        return argument[2]
    if argument[3] is not None:
        return re.sub(r"\\(.)", r"\1", argument[3])
    return argument[4]


def variables(path):
    """The variables that a CMake file sets to constants, without the values' lists split."""
    return {arguments[0]: ";".join(arguments[1:]) for name, arguments in calls(path) if name == "set"}


def _pairs(words):
    return dict(zip(words[::2], words[1::2]))


def _catch_program(path):
    values = variables(path)
    words = [each.replace("\\;", ";") for each in re.split(r"(?<!\\);", values["properties"])]
    return Test(values["target"], values["command"].split(";"), _pairs(words), values.get("catch_version", "2"))


def read(folder):
    """All tests of a build folder, in the order of ctest."""
    tests = {}
    for command, arguments in calls(Path(folder, "CTestTestfile.cmake")):
        if command == "subdirs":
            for name in arguments:
                tests |= read(Path(folder, name))
        elif command == "include":
            test = _catch_program(Path(arguments[0]))
            tests[test.name] = test
        elif command == "add_test":
            tests[arguments[0]] = Test(arguments[0], arguments[1:])
        elif command == "set_tests_properties":
            tests[arguments[0]].properties |= _pairs(arguments[2:])
    return tests
