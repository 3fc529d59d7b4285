// Imitates a Catch test program that fails in the way that ENDING names.

#include <cstdio>
#include <cstdlib>
#include <string_view>

#define TEXT_OF(name) #name
#define TEXT(name) TEXT_OF(name)

int main(int count, char** arguments) {
    constexpr std::string_view ending = TEXT(ENDING);
    const std::string_view option = count > 1 ? arguments[1] : "";
    if (option == "--list-test-names-only") { // Catch2 2
        std::puts("Runner_refuses_program_that_" TEXT(ENDING));
        return ending == "breaks_off_its_list_of_tests" ? 0 : 1;
    }
    if (option == "--list-tests") { // Catch2 3
        std::puts("<MatchingTests>\n<Name>Runner_refuses_program_that_" TEXT(ENDING) "</Name>");
        if (ending != "breaks_off_its_list_of_tests")
            std::puts("</MatchingTests>");
        return 0;
    }
    if (ending == "ends_early_with_0")
        return 0;
    if (ending == "asserts_nothing") {
        std::puts("test cases: 1 | 1 passed\nassertions: - none -\n");
        return 0;
    }
    if (ending == "has_a_failing_assertion") {
        std::puts("test cases: 1 | 1 failed\nassertions: 1 | 1 failed\n");
        return 1;
    }
    std::puts("All tests passed (3 assertions in 1 test case)\n");
    return ending == "breaks_off_after_its_closing_line" ? 3 : 0;
}
