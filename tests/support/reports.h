/* What a run wrote: its parts, and the errors that it reports. */
#pragma once

#include <initializer_list>
#include <string>

namespace tolvek {

class fresh_system;

bool contains(const std::string &text, const std::string &part);

/* The number of the first error that the text reports, by the line behind its heading; 0 when there is none, -1 for a text
   that is no message. */
int error_of(const std::string &text);

/* Is this message the one of an error that the text reports? Two numbers may have one text. */
bool raises(const std::string &text, int number);

/* What expressions are worth, each typed at the prompt, in this order. */
struct expression_value {
    const char *expression, *value;
};
void expect_values(fresh_system &system, std::initializer_list<expression_value> rows);

/* The errors of wrong statements, in this order; behind each the prompt computes as before. */
struct wrong_statement {
    const char *text;
    int number;
};
void expect_errors(fresh_system &system, std::initializer_list<wrong_statement> rows);

} // namespace tolvek
