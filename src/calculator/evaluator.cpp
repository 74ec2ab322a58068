#include "calculator/evaluator.h"

#include "calculator/numbertext.h"

#include <cmath>
#include <utility>

namespace calculator {

namespace {

// The rewriting works on 1-based positions held in signed 16-bit counters: a position of 0
// or a counter stepping past 32767 is a run-time failure, as is a negative length.
constexpr int PositionMax = 32767;

constexpr char16_t SqrtKey = u'\u00F9'; // typed form of the square root

TokenCounters g_counters;
DisplayBlankProbe g_probe;

int step(int i) {
    if (i >= PositionMax)
        throw EvalFailure{};
    return i + 1;
}

// A For loop from 1 to `bound` on a 16-bit counter overflows when it reaches its end.
void checkBound(qsizetype bound) {
    if (bound >= PositionMax)
        throw EvalFailure{};
}

// Char at a 1-based position: nothing beyond the end, a failure before the start.
char16_t at(const QString& t, int p) {
    if (p < 1)
        throw EvalFailure{};
    return p <= t.size() ? t[p - 1].unicode() : u'\0';
}

// Whether the text at 1-based position p starts with `s` (ASCII).
bool at(const QString& t, int p, const char* s) {
    if (p < 1)
        throw EvalFailure{};
    qsizetype i = p - 1;
    for (; *s; ++s, ++i) {
        if (i >= t.size() || t[i].unicode() != static_cast<char16_t>(*s))
            return false;
    }
    return true;
}

// Mid$(t, p, n) with its failures; n < 0 fails.
QString mid(const QString& t, int p, int n) {
    if (p < 1 || n < 0)
        throw EvalFailure{};
    return p > t.size() ? QString() : t.mid(p - 1, n);
}

// Mid$(t, p): from p to the end.
QString midRest(const QString& t, int p) {
    if (p < 1)
        throw EvalFailure{};
    return p > t.size() ? QString() : t.mid(p - 1);
}

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// Capitals of the ASCII letters only; everything else, accented letters included, stays.
void capitalsNoBlanks(QString& t) {
    QChar* d = t.data();
    qsizetype out = 0;
    for (qsizetype i = 0, n = t.size(); i < n; ++i) {
        char16_t u = d[i].unicode();
        if (u == u' ')
            continue;
        if (u >= u'a' && u <= u'z')
            u = static_cast<char16_t>(u - (u'a' - u'A'));
        d[out++] = QChar(u);
    }
    t.truncate(out);
}

double finite(double v) {
    if (!std::isfinite(v))
        throw EvalFailure{};
    return v;
}

// Number text as the rewriting writes it back: no blanks around it.
QString written(double v) {
    return NumberText(finite(v)).trimmed();
}

double readNumber(const QString& text) {
    try {
        return NumberValue(text);
    } catch (const NumberOverflow&) {
        throw EvalFailure{};
    }
}

const char* const FunctionCodes[] = {"SQR", "EXP", "LON", "LOG", "SIN",
                                     "COS", "TAN", "ISI", "ICO", "ITA"};
const char* const Operators[] = {" ^ ", " / ", " * ", " - ", " + "};

bool isLetterRewrite(char16_t c) {
    return c == SqrtKey || c == u'S' || c == u'L' || c == u'C' || c == u'T' || c == u'I' ||
           c == u'E';
}

bool isOperatorRewrite(char16_t c) {
    return c == u'^' || c == u'*' || c == u'/' || c == u'+' || c == u'-';
}

// Function code starting at 1-based position p: its index in FunctionCodes, or -1.
int functionAt(const QString& t, int p) {
    if (p < 1)
        throw EvalFailure{};
    if (p + 2 > t.size())
        return -1;
    const QChar* s = t.constData() + (p - 1);
    const char16_t a = s[0].unicode(), b = s[1].unicode(), c = s[2].unicode();
    switch (a) {
    case u'S':
        if (b == u'Q' && c == u'R')
            return 0;
        if (b == u'I' && c == u'N')
            return 4;
        return -1;
    case u'E':
        return b == u'X' && c == u'P' ? 1 : -1;
    case u'L':
        if (b == u'O' && c == u'N')
            return 2;
        if (b == u'O' && c == u'G')
            return 3;
        return -1;
    case u'C':
        return b == u'O' && c == u'S' ? 5 : -1;
    case u'T':
        return b == u'A' && c == u'N' ? 6 : -1;
    case u'I':
        if (b == u'S' && c == u'I')
            return 7;
        if (b == u'C' && c == u'O')
            return 8;
        if (b == u'T' && c == u'A')
            return 9;
        return -1;
    default:
        return -1;
    }
}

// Arc sine by the arc tangent, with the two ends handled apart.
double arcSine(double x) {
    const double quarter = std::atan(1.0);
    if (x == 1)
        return quarter + quarter;
    if (x == -1)
        return quarter * -2;
    const double r = finite(1 - finite(x * x));
    if (r < 0)
        throw EvalFailure{};
    return std::atan(finite(x / std::sqrt(r)));
}

double toRadians(double x) {
    // Left to right, with pi always computed as atan 1 * 4.
    return finite(finite(finite(x * 4) * std::atan(1.0)) / 180);
}

double toDegrees(double r) {
    return finite(finite(r * 180) / (std::atan(1.0) * 4));
}

double applyFunction(int code, double x, std::int16_t angleMode) {
    const bool degrees = angleMode == 0;
    switch (code) {
    case 0: // SQR
        if (x < 0)
            throw EvalFailure{};
        return std::sqrt(x);
    case 1: // EXP
        return finite(std::exp(x));
    case 2: // LON
        if (x <= 0)
            throw EvalFailure{};
        return std::log(x);
    case 3: // LOG
        if (x <= 0)
            throw EvalFailure{};
        return std::log(x) / std::log(10.0);
    case 4: // SIN
        return finite(std::sin(degrees ? toRadians(x) : x));
    case 5: // COS
        return finite(std::cos(degrees ? toRadians(x) : x));
    case 6: // TAN
        return finite(std::tan(degrees ? toRadians(x) : x));
    case 7: { // ISI
        const double r = arcSine(x);
        return degrees ? toDegrees(r) : r;
    }
    case 8: { // ICO
        const double quarter = std::atan(1.0);
        const double r = (quarter + quarter) - arcSine(x);
        return degrees ? toDegrees(r) : r;
    }
    case 9: { // ITA
        const double r = std::atan(x);
        return degrees ? toDegrees(r) : r;
    }
    }
    throw EvalFailure{};
}

double applyOperator(int op, double a, double b) {
    switch (op) {
    case 0:
        if (a == 0 && b < 0)
            throw EvalFailure{}; // division by zero
        return finite(std::pow(a, b));
    case 1:
        if (b == 0)
            throw EvalFailure{};
        return finite(a / b);
    case 2:
        return finite(a * b);
    case 3:
        return finite(a - b);
    default:
        return finite(a + b);
    }
}

} // namespace

TokenCounters& counters() {
    return g_counters;
}

void setDisplayBlankProbe(DisplayBlankProbe probe) {
    g_probe = std::move(probe);
}

void SimplifySigns(QString& t) {
    capitalsNoBlanks(t);
    for (;;) {
        // Every rewrite of a pass shortens the text, so "unchanged" is "nothing rewritten".
        bool changed = false;

        const qsizetype n = t.size();
        checkBound(n);
        for (int i = 1; i <= n; ++i) {
            if (i > t.size())
                break; // pairs only shorten the text: nothing is left to look at
            const char16_t c = t.at(i - 1).unicode();
            if (c != u'-' && c != u'+')
                continue;
            if (at(t, i, "--")) {
                t.replace(i - 1, 2, QChar(u'+'));
                changed = true;
            }
            if (at(t, i, "+-")) {
                t.replace(i - 1, 2, QChar(u'-'));
                changed = true;
            }
            if (at(t, i, "-+")) {
                t.replace(i - 1, 2, QChar(u'-'));
                changed = true;
            }
            if (at(t, i, "++")) {
                t.replace(i - 1, 2, QChar(u'+'));
                changed = true;
            }
        }

        if (t.startsWith(u'+')) {
            t.remove(0, 1);
            changed = true;
        }

        // (12.5) and (-3) lose their parentheses; (1E3) and () keep them.
        const qsizetype m = t.size();
        checkBound(m);
        for (int i = 1; i <= m; ++i) {
            if (i > t.size())
                break;
            if (t.at(i - 1) != u'(')
                continue;
            for (int j = 1;; j = step(j)) {
                const char16_t c = at(t, i + j);
                if (c == u')' && j >= 2) {
                    t.remove(i + j - 1, 1);
                    t.remove(i - 1, 1);
                    changed = true;
                    break;
                }
                if (isDigit(c) || c == u'.' || (j == 1 && (c == u'-' || c == u'+')))
                    continue;
                break;
            }
        }

        if (!changed) {
            SpaceTokens(t);
            return;
        }
    }
}

// The word rules of SpaceTokens at 1-based position i, in their order.
void spaceWordAt(QString& t, int i) {
    if (at(t, i) == SqrtKey)
        t.replace(i - 1, 1, QStringLiteral("SQR"));
    const char16_t c = at(t, i);
    if (c == u'S' && at(t, i, "SQR"))
        t.insert(i + 2, u' ');
    if (c == u'L' && at(t, i, "LN"))
        t.replace(i, 1, QStringLiteral("ON "));
    if ((c == u'S' && at(t, i, "SIN")) || (c == u'C' && at(t, i, "COS")))
        t.insert(i + 2, u' ');
    if ((c == u'L' && at(t, i, "LOG")) || (c == u'T' && at(t, i, "TAN")))
        t.insert(i + 2, u' ');
    if ((c == u'I' && at(t, i, "ISI")) || (c == u'E' && at(t, i, "EXP")))
        t.insert(i + 2, u' ');
    if (c == u'I' && (at(t, i, "ITA") || at(t, i, "ICO")))
        t.insert(i + 2, u' ');
    if (c == u'I' && at(t, i, "INV"))
        t = t.left(i) + mid(t, i + 3, 2) + u' ' + midRest(t, i + 6);
}

void SpaceTokens(QString& t) {
    capitalsNoBlanks(t);
    if (t.startsWith(u'+'))
        t.remove(0, 1);
    t.reserve(3 * t.size() + 8);
    t.prepend(u' ');
    t.append(u' ');

    const qsizetype bound = 3 * t.size();
    checkBound(bound);
    for (int i = 1; i <= bound; i = step(i)) {
        // Rewrites only happen at or after i, so past the end nothing can change any more.
        if (i > t.size())
            break;
        const char16_t first = t.at(i - 1).unicode();
        if (isLetterRewrite(first)) {
            spaceWordAt(t, i);
            continue; // the char at i is still a letter: no operator rule applies
        }
        if (!isOperatorRewrite(first))
            continue;
        if (at(t, i) == u'^') {
            t.replace(i - 1, 1, QStringLiteral(" ^ "));
            i = step(i);
        }
        if (at(t, i) == u'*') {
            t.replace(i - 1, 1, QStringLiteral(" * "));
            i = step(i);
        }
        if (at(t, i) == u'/') {
            t.replace(i - 1, 1, QStringLiteral(" / "));
            i = step(i);
        }
        if (at(t, i) == u'+') {
            const char16_t before = at(t, i - 1);
            if (before != u'E' && before != u'D') {
                t.replace(i - 1, 1, QStringLiteral(" + "));
                i = step(i);
            }
        }
        if (at(t, i) == u'-') {
            const char16_t before = at(t, i - 1);
            if (before != u'E' && before != u'D' && before != u'(' && before != u' ') {
                t.replace(i - 1, 1, QStringLiteral(" - "));
                i = step(i);
            }
        }
    }
}

void CheckSyntax(const QString& t, std::int16_t& errorCode) {
    const qsizetype n = t.size();
    int open = 0;
    int close = 0;
    for (qsizetype i = 1; i <= n; ++i) {
        const char16_t c = t[i - 1].unicode();
        if ((c == u'*' || c == u'/' || c == u'^') && i + 2 <= n && t[i + 1] == u' ')
            errorCode = EvalMissingOperand;
        if (c == u'(')
            ++open;
        else if (c == u')')
            ++close;
    }
    if (open != close)
        errorCode = EvalParentheses;
}

void CountTokens(const QString& t) {
    TokenCounters c;
    const qsizetype n = t.size();
    checkBound(n);
    for (int i = 1; i <= n; ++i) {
        const char16_t ch = t[i - 1].unicode();
        if (ch == u'(') {
            ++c.ParenCount;
        } else if (ch == u' ') {
            for (const char* op : Operators) {
                if (at(t, i, op))
                    ++c.OperatorCount;
            }
        } else if (functionAt(t, i) >= 0) {
            ++c.FunctionCount;
        }
    }
    g_counters = c;
}

void ReduceFunctions(QString& t, std::int16_t angleMode) {
    int i = 1;
    do {
        i = step(i);
        const int code = functionAt(t, i);
        if (code < 0)
            continue;
        const int start = i + 4;
        const char16_t first = at(t, start);
        if (!isDigit(first) && first != u'-' && first != u'.')
            continue; // its argument is not a plain number yet
        int end = start;
        for (;;) {
            end = step(end);
            if (end > t.size())
                throw EvalFailure{}; // nothing ends the argument
            const char16_t c = at(t, end);
            if (c == u')' || c == u' ')
                break;
        }
        const double x = readNumber(mid(t, start, end - start));
        const double v = applyFunction(code, x, angleMode);
        t = t.left(i - 1) + written(v) + midRest(t, end);
        --g_counters.FunctionCount;
        i = 1;
    } while (!(i >= t.size() || g_counters.FunctionCount < 1));
}

void ReduceParentheses(QString& t, [[maybe_unused]] std::int16_t angleMode) {
    while (g_counters.ParenCount > 0) {
        const int open = static_cast<int>(t.lastIndexOf(u'(')) + 1;
        if (open == 0)
            return;
        const int closeAt = static_cast<int>(t.indexOf(u')', open)) + 1;
        const int close = closeAt == 0 ? 0 : closeAt - open;
        QString inner = mid(t, open + 1, close - 1);
        for (QChar c : std::as_const(inner)) {
            if (c.unicode() >= u'F' && c.unicode() <= u'Y')
                return; // a function inside must be reduced first
        }
        SimplifySigns(inner);
        ReduceOperators(inner);
        t = t.left(open - 1) + inner + midRest(t, open + close + 1);
        --g_counters.ParenCount;
        SimplifySigns(t);
    }
}

void ReduceOperators(QString& t) {
    SimplifySigns(t);
    int op = 0;
    while (op < 5) {
        bool reduced = false;
        int pos = 2;
        do {
            pos = step(pos);
            if (g_probe && g_probe())
                return;
            if (!at(t, pos, Operators[op]))
                continue;

            int left = pos - 1;
            while (at(t, left) != u' ')
                --left;
            int right = pos + 3;
            do {
                right = step(right);
                if (right > t.size())
                    throw EvalFailure{}; // the scan would run on until its counter overflows
            } while (at(t, right) != u' ');

            const double a = readNumber(mid(t, left + 1, pos - 1 - left));
            const double b = readNumber(mid(t, pos + 3, right - (pos + 3)));
            t = t.left(left) + written(applyOperator(op, a, b)) + midRest(t, right);

            --g_counters.OperatorCount;
            if (g_counters.OperatorCount < 1)
                return;
            reduced = true;
            break;
        } while (pos < t.size());
        op = reduced ? 0 : op + 1;
    }
}

void EvaluateExpression(QString& expression, std::int16_t& errorCode, std::int16_t angleMode) {
    errorCode = EvalOk;
    try {
        SimplifySigns(expression);
        CheckSyntax(expression, errorCode);
        if (errorCode != EvalOk)
            return;
        CountTokens(expression);

        QString saved;
        for (int cycle = 1;; ++cycle) {
            if (expression == saved)
                SimplifySigns(expression);
            saved = expression;
            if (cycle > 100) {
                errorCode = EvalImpossible;
                return;
            }
            if (g_counters.FunctionCount > 0) {
                ReduceFunctions(expression, angleMode);
                SimplifySigns(expression);
            }
            if (g_counters.ParenCount > 0)
                ReduceParentheses(expression, angleMode);
            CountTokens(expression);
            if (g_counters.FunctionCount > 0 || g_counters.ParenCount > 0)
                continue;
            if (g_counters.OperatorCount > 0)
                ReduceOperators(expression);
            CountTokens(expression);
            if (g_counters.OperatorCount > 0)
                continue;
            break;
        }

        expression = trimBlanks(expression);
        if (expression.contains(u' '))
            errorCode = EvalImpossible;
    } catch (const EvalFailure&) {
        errorCode = EvalImpossible;
    } catch (const NumberOverflow&) {
        errorCode = EvalImpossible;
    }
}

QString trimBlanks(const QString& text) {
    qsizetype b = 0;
    qsizetype e = text.size();
    while (b < e && text.at(b) == u' ')
        ++b;
    while (e > b && text.at(e - 1) == u' ')
        --e;
    return text.mid(b, e - b);
}

} // namespace calculator
