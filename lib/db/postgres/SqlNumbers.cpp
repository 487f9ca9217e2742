#include "db/postgres/SqlParts.h"

// Arithmetic, and the functions of numbers. The server's own 22003 says overflow as T0006 does, 22012 division by zero.
namespace tsv::db::postgres {
namespace {

std::string Amounts() {
  return Function("tsv_quantia(x numeric)", "numeric", R"(
BEGIN
  IF x NOT BETWEEN -922337203685477.5808 AND 922337203685477.5807 THEN RAISE SQLSTATE 'T0006'; END IF;
  RETURN x;
END)") + Function("tsv_half_even(x numeric, places integer)", "numeric", R"(
BEGIN
  RETURN CASE WHEN abs(x - trunc(x, places)) * 2 = 10::numeric ^ -places THEN 2 * round(x * 0.5, places)
              ELSE round(x, places) END;
END)") + Function("tsv_currency_multiply(a numeric, b numeric)", "numeric", R"(
DECLARE
  product CONSTANT numeric := a * b;
BEGIN
  IF scale(product) <= 4 AND product BETWEEN -1e14 AND 1e14 THEN RETURN product; END IF;
  RETURN tesovia.tsv_quantia(tesovia.tsv_half_even(product, 4));
END)") +
         // The mean of amounts, exact where a quotient's digits might not be.
         Function("tsv_media(total numeric, count bigint)", "numeric", R"(
DECLARE
  units CONSTANT numeric := div(total * 10000, count);
  rest CONSTANT numeric := 2 * abs(total * 10000 - units * count);
BEGIN
  RETURN 0.0001 * (units + CASE WHEN rest > count OR rest = count AND units % 2 <> 0 THEN sign(total) ELSE 0 END);
END)") +
         // By a whole number the product is exact: one operation, whatever the condition that gave it.
         Expression("tsv_currency_multiply(a integer, b numeric)", "numeric", "a * b") +
         Expression("tsv_currency_multiply(a numeric, b integer)", "numeric", "a * b");
}

std::string Operators() {
  return Expression("tsv_divide(a float8, b float8)", "float8", "a / b") +
         // A fraction is rounded first, halves to even.
         Expression("tsv_integer_divide(a float8, b float8)", "integer", "a::integer / b::integer") +
         Expression("tsv_modulo(a float8, b float8)", "integer", "a::integer % b::integer") +
         // Below the least number, where the server would raise an error, a power is zero.
         Function("tsv_power(a float8, b float8)", "float8", R"(
BEGIN
  IF a = 0 AND b < 0 THEN RAISE SQLSTATE 'T0011'; END IF;
  IF a < 0 AND b <> trunc(b) THEN RAISE SQLSTATE 'T0005'; END IF;
  RETURN CASE WHEN a <> 0 AND b * ln(abs(a)) < -745.13 THEN 0 ELSE power(a, b) END;
END)");
}

// Whole numbers and amounts stay exact.
std::string KeepingType() {
  return Expression("jet_abs(x integer)", "integer", "abs(x)") +
         Function("jet_abs(x numeric)", "numeric", "BEGIN RETURN tesovia.tsv_quantia(abs(x)); END") +
         Expression("jet_abs(x float8)", "float8", "abs(x)") + Expression("jet_int(x integer)", "integer", "x") +
         Function("jet_int(x numeric)", "numeric", "BEGIN RETURN tesovia.tsv_quantia(floor(x)); END") +
         Expression("jet_int(x float8)", "float8", "floor(x)") + Expression("jet_fix(x integer)", "integer", "x") +
         Expression("jet_fix(x numeric)", "numeric", "trunc(x)") +
         Expression("jet_fix(x float8)", "float8", "trunc(x)");
}

// Halves to even, in the decimal digits that the number is written with.
std::string Rounding() {
  return Function("tsv_casas(places integer)", "integer", R"(
BEGIN
  IF places NOT BETWEEN 0 AND 22 THEN RAISE SQLSTATE 'T0005'; END IF;
  RETURN places;
END)") +
         Function("jet_round(x integer, places integer DEFAULT 0)", "integer",
                  "BEGIN places := tesovia.tsv_casas(places); RETURN x; END") +
         Function("jet_round(x numeric, places integer DEFAULT 0)", "numeric", R"(
BEGIN
  RETURN tesovia.tsv_quantia(tesovia.tsv_half_even(x, least(tesovia.tsv_casas(places), 4)));
END)") +
         Function("jet_round(x float8, places integer DEFAULT 0)", "float8",
                  "BEGIN RETURN tesovia.tsv_half_even(x::text::numeric, tesovia.tsv_casas(places)); END");
}

}  // namespace

std::string SqlNumbers() {
  return Amounts() + Operators() + KeepingType() + Rounding() +
         Expression("jet_sgn(x float8)", "integer", "sign(x)::integer") + Function("jet_sqr(x float8)", "float8", R"(
BEGIN
  IF x < 0 THEN RAISE SQLSTATE 'T0005'; END IF;
  RETURN sqrt(x);
END)");
}

}  // namespace tsv::db::postgres
