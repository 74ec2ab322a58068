#pragma once

#include <QString>
#include <cstdint>
#include <functional>

// The calculator's expression evaluator. It rewrites the text in place: the expression is
// brought to a spaced canonical form, then function applications on plain numbers, innermost
// parenthesised groups and binary operators are replaced one at a time by their value until a
// single number is left. The precedence is deliberately simple and users rely on it:
// operators are taken in the order ^ / * - +, each leftmost first (2^3^2 = 64), and a sign
// belongs to its number (-2^2 = 4).
namespace calculator {

enum EvalCode : std::int16_t {
    EvalOk = 0,
    EvalImpossible = 1,     // run-time failure, unreducible text, or more than 100 cycles
    EvalParentheses = 2,    // numbers of "(" and ")" differ
    EvalMissingOperand = 3, // "*", "/" or "^" not followed by an operand
};

enum AngleUnit : std::int16_t { Degrees = 0, Radians = 1 };

// Evaluates `expression` in place. On success (errorCode 0) it holds the result as number
// text without surrounding blanks; otherwise it is left as far as the rewriting got.
void EvaluateExpression(QString& expression, std::int16_t& errorCode, std::int16_t angleMode);

// The window hosting the evaluator can report its display as blank; operator reduction then
// stops at once. Nothing installed means "not blank".
using DisplayBlankProbe = std::function<bool()>;
void setDisplayBlankProbe(DisplayBlankProbe probe);

// ---- The rewriting steps, exposed for testing. Each may throw EvalFailure; the entry point
// turns that into code 1.

struct EvalFailure {};

// Counters shared by the steps: recomputed by CountTokens, decremented by the reductions.
struct TokenCounters {
    std::int16_t ParenCount = 0;
    std::int16_t FunctionCount = 0;
    std::int16_t OperatorCount = 0;
};
TokenCounters& counters();

// Capitals, no blanks, sign pairs collapsed ("--" "+", "+-" "-", "-+" "-", "++" "+"), a
// leading "+" dropped, parenthesised plain numbers unwrapped; then SpaceTokens.
void SimplifySigns(QString& text);
// Canonical spacing: one blank around the whole text, function codes followed by a blank,
// binary operators surrounded by blanks, signs glued to their numbers.
void SpaceTokens(QString& text);
// Sets errorCode to 3 for an operator without operand, to 2 for unbalanced parentheses.
void CheckSyntax(const QString& text, std::int16_t& errorCode);
void CountTokens(const QString& text);
void ReduceFunctions(QString& text, std::int16_t angleMode);
void ReduceParentheses(QString& text, std::int16_t angleMode);
void ReduceOperators(QString& text);

// The text without its leading and trailing blanks (spaces only, as the old Trim did).
QString trimBlanks(const QString& text);

} // namespace calculator
