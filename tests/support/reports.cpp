#include "support/reports.h"

#include "language/execution.h"
#include "language/expressions.h"
#include "support/fresh_system.h"

namespace tolvek {

constexpr int last_message = 377;
constexpr char heading[] = "*** Inappropriate symbol: ";

bool contains(const std::string &text, const std::string &part) { return text.find(part) != std::string::npos; }

/* The line behind the heading that stands from `at` on. */
static std::string message_behind(const std::string &text, std::size_t at) {
    const std::size_t line = text.find('\n', at) + 1;
    return text.substr(line, text.find('\n', line) - line);
}

int error_of(const std::string &text) {
    const std::size_t at = text.find(heading);
    if (at == std::string::npos) return 0;
    const std::string message = message_behind(text, at);
    for (int n = 1; n <= last_message; n++)
        if (message == message_text(n)) return n;
    return -1;
}

bool raises(const std::string &text, int number) {
    for (std::size_t at = text.find(heading); at != std::string::npos; at = text.find(heading, at + 1))
        if (message_behind(text, at) == message_text(number)) return true;
    return false;
}

void expect_values(fresh_system &system, std::initializer_list<expression_value> rows) {
    for (const expression_value &row : rows) EXPECT_EQ(system.value_of(row.expression), row.value) << row.expression;
}

void expect_errors(fresh_system &system, std::initializer_list<wrong_statement> rows) {
    for (const wrong_statement &row : rows) {
        EXPECT_TRUE(raises(system.run(row.text), row.number)) << row.text << ", not " << row.number;
        EXPECT_EQ(integerflag + statcount + values_held, 0) << row.text;
        EXPECT_EQ(system.value_of("1+1"), "2") << row.text;
    }
}

} // namespace tolvek
