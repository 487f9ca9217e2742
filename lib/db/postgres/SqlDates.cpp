#include <cstdint>

#include "db/jet/Calendar.h"
#include "db/postgres/SqlParts.h"

// The value functions of dates. What leaves the calendar of the years 100 to 9999 is 5.
namespace tsv::db::postgres {
namespace {

std::string NamesOf(std::string_view (*nameOf)(std::int32_t), std::int32_t count) {
  std::string names;
  for (std::int32_t i = 1; i <= count; ++i) names.append(i > 1 ? ", " : "").append(Quoted(nameOf(i)));
  return "ARRAY[" + names + "]";
}

std::string Parts() {
  const auto part = [](std::string_view name) {
    return Expression("jet_" + std::string(name) + "(d timestamp)", "integer",
                      "extract(" + std::string(name) + " FROM d)::integer");
  };
  return part("year") + part("month") + part("day") + part("hour") + part("minute") + part("second") +
         Expression("jet_datevalue(d timestamp)", "timestamp", "d::date::timestamp") +
         Expression("jet_timevalue(d timestamp)", "timestamp", "DATE '1899-12-30' + d::time");
}

// A week begins on a day from 1, Sunday, to 7, or 0 for the usual Sunday. Its year's first week has 1 January (0 or
// 1), at least four days of the year (2) or seven (3).
constexpr const char* kWeekday = R"(
BEGIN
  IF first_day NOT BETWEEN 0 AND 7 THEN RAISE SQLSTATE 'T0005'; END IF;
  RETURN (extract(dow FROM d)::integer + 8 - greatest(first_day, 1)) % 7 + 1;
END)";

constexpr const char* kWeek = R"(
DECLARE
  y CONSTANT integer := extract(year FROM d);
  new_year date;
  days_before integer;
  days integer;
BEGIN
  IF first_week NOT BETWEEN 0 AND 3 THEN RAISE SQLSTATE 'T0005'; END IF;
  FOR candidate IN REVERSE least(y + 1, 9999) .. greatest(y - 1, 100) LOOP
    new_year := make_date(candidate, 1, 1);
    days_before := tesovia.jet_weekday(new_year, first_day) - 1;
    days := d::date - new_year + days_before -
      CASE WHEN first_week <= 1 OR first_week = 2 AND days_before <= 3 OR days_before = 0 THEN 0 ELSE 7 END;
    CONTINUE WHEN candidate > y AND first_week <= 1;
    IF days >= 0 THEN RETURN days / 7 + 1; END IF;
  END LOOP;
  RETURN 1;
END)";

// Months counted from year 0, so that they can be added and subtracted.
constexpr const char* kInMonth = R"(
DECLARE
  y integer;
  m CONSTANT integer := months % 12 + 1;
BEGIN
  IF months NOT BETWEEN 1200 AND 119999 THEN RAISE SQLSTATE 'T0005'; END IF;
  y := months / 12;
  RETURN make_date(y, m, least(extract(day FROM d)::integer, tesovia.tsv_dias_do_mes(y, m))) + d::time;
END)";

constexpr const char* kDateSerial = R"(
DECLARE
  full_year CONSTANT bigint := y::bigint + CASE WHEN y NOT BETWEEN 0 AND 99 THEN 0 WHEN y < 30 THEN 2000 ELSE 1900 END;
BEGIN
  RETURN tesovia.tsv_momento(tesovia.tsv_dia(tesovia.tsv_no_mes(DATE '1900-01-01', full_year * 12 + m - 1)) +
    d::bigint - 1, 0);
END)";

constexpr const char* kDateAdd = R"(
DECLARE
  months CONSTANT integer := CASE lower(interval_name COLLATE "C")
    WHEN 'yyyy' THEN 12 WHEN 'q' THEN 3 WHEN 'm' THEN 1 END;
  seconds CONSTANT integer := CASE WHEN months IS NULL THEN tesovia.tsv_duracao(interval_name) END;
  n CONSTANT bigint := count::integer;
BEGIN
  RETURN coalesce(tesovia.tsv_no_mes(d, tesovia.tsv_meses(d) + months * n),
                  tesovia.tsv_de_segundos(tesovia.tsv_segundos(d) + seconds * n));
END)";

// The boundaries crossed between two dates: one second can be a year's difference.
constexpr const char* kDateDiff = R"(
DECLARE
  days CONSTANT integer := tesovia.tsv_dia(d2) - tesovia.tsv_dia(d1);
  seconds integer;
BEGIN
  CASE lower(interval_name COLLATE "C")
    WHEN 'yyyy' THEN RETURN tesovia.jet_year(d2) - tesovia.jet_year(d1);
    WHEN 'q' THEN RETURN tesovia.tsv_meses(d2) / 3 - tesovia.tsv_meses(d1) / 3;
    WHEN 'm' THEN RETURN tesovia.tsv_meses(d2) - tesovia.tsv_meses(d1);
    WHEN 'y', 'd' THEN RETURN days;
    WHEN 'w' THEN RETURN days / 7;
    WHEN 'ww' THEN RETURN (days - tesovia.jet_weekday(d2, first_day) + tesovia.jet_weekday(d1, first_day)) / 7;
    ELSE seconds := tesovia.tsv_duracao(interval_name);
  END CASE;
  RETURN floor(tesovia.tsv_segundos(d2) / seconds::numeric) - floor(tesovia.tsv_segundos(d1) / seconds::numeric);
END)";

constexpr const char* kDatePart = R"(
BEGIN
  RETURN CASE lower(interval_name COLLATE "C")
    WHEN 'yyyy' THEN tesovia.jet_year(d) WHEN 'q' THEN (tesovia.jet_month(d) + 2) / 3 WHEN 'm' THEN tesovia.jet_month(d)
    WHEN 'y' THEN extract(doy FROM d)::integer WHEN 'd' THEN tesovia.jet_day(d)
    WHEN 'w' THEN tesovia.jet_weekday(d, first_day) WHEN 'ww' THEN tesovia.tsv_semana(d, first_day, first_week)
    WHEN 'h' THEN tesovia.jet_hour(d) WHEN 'n' THEN tesovia.jet_minute(d) WHEN 's' THEN tesovia.jet_second(d)
    ELSE tesovia.tsv_duracao(interval_name) END;
END)";

std::string Arithmetic() {
  return Expression("tsv_meses(d timestamp)", "integer",
                    "12 * extract(year FROM d)::integer + extract(month FROM d)::integer - 1") +
         Function("tsv_no_mes(d timestamp, months bigint)", "timestamp", kInMonth) +
         Expression("tsv_segundos(d timestamp)", "bigint", "extract(epoch FROM d - TIMESTAMP '1899-12-30')::bigint") +
         Function("tsv_de_segundos(seconds bigint)", "timestamp", R"(
DECLARE
  dia CONSTANT bigint := floor(seconds / 86400::numeric);
BEGIN
  RETURN tesovia.tsv_momento(dia, (seconds - dia * 86400)::integer);
END)") + Function("tsv_duracao(interval_name text)", "integer", R"(
BEGIN
  CASE lower(interval_name COLLATE "C")
    WHEN 'y', 'd', 'w' THEN RETURN 86400;
    WHEN 'ww' THEN RETURN 604800;
    WHEN 'h' THEN RETURN 3600;
    WHEN 'n' THEN RETURN 60;
    WHEN 's' THEN RETURN 1;
    ELSE RAISE SQLSTATE 'T0005';
  END CASE;
END)") + Function("jet_dateserial(y integer, m integer, d integer)", "timestamp", kDateSerial) +
         Function("jet_timeserial(h integer, m integer, s integer)", "timestamp",
                  "BEGIN RETURN tesovia.tsv_de_segundos(3600::bigint * h + 60::bigint * m + s); END") +
         Function("jet_dateadd(interval_name text, count float8, d timestamp)", "timestamp", kDateAdd) +
         Function(
             "jet_datediff(interval_name text, d1 timestamp, d2 timestamp, first_day integer DEFAULT 0, "
             "first_week integer DEFAULT 0)",
             "integer", kDateDiff) +
         Function(
             "jet_datepart(interval_name text, d timestamp, first_day integer DEFAULT 0, "
             "first_week integer DEFAULT 0)",
             "integer", kDatePart);
}

// A name of a list, or its first three letters.
std::string Names() {
  return Expression("tsv_nomes_dos_meses()", "text[]", NamesOf(jet::MonthNameOf, 12)) +
         Expression("tsv_nomes_dos_dias()", "text[]", NamesOf(jet::WeekdayNameOf, 7)) +
         Function("tsv_nome(names text[], place integer, abbreviated boolean)", "text", R"(
BEGIN
  IF place NOT BETWEEN 1 AND cardinality(names) THEN RAISE SQLSTATE 'T0005'; END IF;
  RETURN CASE WHEN abbreviated THEN left(names[place], 3) ELSE names[place] END;
END)") +
         Function("jet_monthname(m integer, abbreviated boolean DEFAULT false)", "text",
                  "BEGIN RETURN tesovia.tsv_nome(tesovia.tsv_nomes_dos_meses(), m, abbreviated); END") +
         Function("jet_weekdayname(n integer, abbreviated boolean DEFAULT false, first_day integer DEFAULT 1)", "text",
                  R"(
BEGIN
  IF n NOT BETWEEN 1 AND 7 OR first_day NOT BETWEEN 0 AND 7 THEN RAISE SQLSTATE 'T0005'; END IF;
  RETURN tesovia.tsv_nome(tesovia.tsv_nomes_dos_dias(), (n + greatest(first_day, 1) - 2) % 7 + 1, abbreviated);
END)");
}

// One moment for the whole statement, in the session's time zone.
std::string Clock(std::string_view name, std::string_view expression) {
  std::string script = "CREATE OR REPLACE FUNCTION tesovia.";
  script.append(name).append("() RETURNS timestamp LANGUAGE sql STABLE PARALLEL SAFE RETURN ");
  return script.append(expression).append(";\n");
}

// What functions of numbers give for the days of a date is a date again.
std::string KeepingDates() {
  std::string script;
  for (const std::string name : {"abs", "int", "fix"}) {
    script +=
        Function("jet_" + name + "(d timestamp)", "timestamp",
                 "BEGIN RETURN tesovia.tsv_como_data(tesovia.jet_" + name + "(tesovia.tsv_date_to_days(d))); END");
  }
  return script +
         Function("jet_round(d timestamp, places integer DEFAULT 0)", "timestamp",
                  "BEGIN RETURN tesovia.tsv_como_data(tesovia.jet_round(tesovia.tsv_date_to_days(d), places)); END");
}

}  // namespace

std::string SqlDates() {
  return Parts() + Function("jet_weekday(d timestamp, first_day integer DEFAULT 0)", "integer", kWeekday) +
         Function("tsv_semana(d timestamp, first_day integer, first_week integer)", "integer", kWeek) + Arithmetic() +
         Names() + KeepingDates() + Clock("jet_now", "date_trunc('second', statement_timestamp()::timestamp)") +
         Clock("jet_date", "date_trunc('day', statement_timestamp()::timestamp)") +
         Clock("jet_time", "DATE '1899-12-30' + date_trunc('second', statement_timestamp()::timestamp)::time");
}

}  // namespace tsv::db::postgres
