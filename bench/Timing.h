#pragma once

#include <functional>
#include <string>
#include <vector>

/// One way to do a piece of work, timed beside the others of its table.
struct Contender {
    std::string name;
    std::function<void()> work;
};

/// Times all contenders in turn, many rounds, so that a disturbance hits all alike. Prints for each the
/// median time and its ratio to the last one's.
void PrintTable(const std::string& title, const std::vector<Contender>& contenders);

/// Keeps a result from being optimised away.
void Use(std::size_t result);

/// Ends the program with a message unless the condition holds: what is timed must be right.
void Require(bool condition, const char* what);
