#include "db/jet/Functions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "db/jet/TextValues.h"
#include "types/Conversions.h"
#include "types/Erro.h"

namespace tsv::db::jet {
namespace {

using namespace std::string_literals;

Currency Amount(std::int64_t tenThousandths) { return Currency::FromTenThousandths(tenThousandths); }
Date Day(int year, int month, int day) { return Date::FromCivil(year, month, day); }
Date Moment(const char* iso) { return Date::FromText(iso).value(); }

// Calls a function of the table as an engine does; the number of the error it raises is thrown on as it is.
Variant Call(std::string_view name, const std::vector<Variant>& arguments) {
  const Function* function = FindFunction(name);
  if (!function) throw std::logic_error("no function " + std::string(name));
  return function->call(arguments);
}

std::int32_t ErrorOf(std::string_view name, const std::vector<Variant>& arguments) {
  try {
    Call(name, arguments);
  } catch (const Erro& erro) {
    return erro.Numero();
  }
  return 0;
}

struct Case {
  std::string_view function;
  std::vector<Variant> arguments;
  Variant result;
};

std::string Shown(const Variant& value) { return IsNull(value) ? "Null" : TextOf(value); }

void Check(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    std::string call(c.function);
    for (const Variant& argument : c.arguments) call += " [" + Shown(argument) + "]";
    SCOPED_TRACE(call);
    const Variant result = Call(c.function, c.arguments);
    EXPECT_EQ(result.index(), c.result.index());
    EXPECT_EQ(Shown(result), Shown(c.result));
  }
}

TEST(Functions, TableIsConsistent) {
  for (const Function& function : AllFunctions()) {
    SCOPED_TRACE(function.name);
    EXPECT_EQ(FindFunction(function.name), &function) << "two functions of one name";
    EXPECT_LE(function.required, function.arguments.size());
    EXPECT_NE(function.call, nullptr);
    if (function.result == ValueType::Null) {
      ASSERT_FALSE(function.arguments.empty());
      EXPECT_EQ(function.arguments[0], ArgumentKind::Any);
    }
  }
  EXPECT_EQ(FindFunction("dateADD"), FindFunction("DateAdd"));
  EXPECT_EQ(FindFunction("NotThere"), nullptr);
}

TEST(Functions, Texts) {
  Check({
      {"Len", {"açúcar"s}, 6},
      {"Left", {"ação"s, 3}, "açã"s},
      {"Left", {"ação"s, 9}, "ação"s},
      {"Right", {"treasury"s, 3}, "ury"s},
      {"Right", {"ção"s, 0}, ""s},
      {"Mid", {"treasury"s, 6}, "ury"s},
      {"Mid", {"ação"s, 2, 2}, "çã"s},
      {"Mid", {"abc"s, 9, 1}, ""s},
      {"InStr", {"Conta Corrente"s, "c"s}, 1},
      {"InStr", {"abc"s, "z"s}, 0},
      {"InStr", {"2"s, "Conta Corrente"s, "C"s}, 7},
      {"InStr", {"1"s, "Conta Corrente"s, "c"s, 0}, 0},
      {"InStr", {"ÁÉção"s, "ÇÃ"s}, 3},
      {"InStr", {"3"s, "abc"s, ""s}, 3},
      {"InStr", {"4"s, "abc"s, ""s}, 0},
      {"Replace", {"1.234.567"s, "."s, ""s}, "1234567"s},
      {"Replace", {"aÇbç"s, "ç"s, "c"s}, "acbc"s},
      {"Replace", {"aAa"s, "a"s, "x"s, 1, 2}, "xxa"s},
      {"Replace", {"aAa"s, "a"s, "x"s, 2, -1, 0}, "Ax"s},
      {"Replace", {"abc"s, ""s, "x"s}, "abc"s},
      {"UCase", {"ação"s}, "AÇÃO"s},
      {"LCase", {"AÇÃO"s}, "ação"s},
      {"Trim", {"  x "s}, "x"s},
      {"LTrim", {"  x "s}, "x "s},
      {"RTrim", {"  x "s}, "  x"s},
      {"Space", {3}, "   "s},
      {"String", {3, "ção"s}, "ççç"s},
      {"String", {2, 65}, "AA"s},
      {"StrReverse", {"ação"s}, "oãça"s},
      {"Chr", {65}, "A"s},
      {"Chr", {231}, "ç"s},
      {"Chr", {128}, "€"s},
      {"Asc", {"€"s}, 128},
      {"Asc", {"Ω"s}, 63},
      {"StrComp", {"a"s, "A"s, 1}, 0},
      {"StrComp", {"a"s, "A"s, 0}, 1},
      {"StrComp", {"Água"s, "Azul"s}, -1},
      {"StrComp", {"a "s, "A"s}, 1},
  });
  EXPECT_EQ(ErrorOf("Left", {"a"s, -1}), 5);
  EXPECT_EQ(ErrorOf("Mid", {"a"s, 0}), 5);
  EXPECT_EQ(ErrorOf("Mid", {"a"s, 1, -1}), 5);
  EXPECT_EQ(ErrorOf("InStr", {"0"s, "a"s, "a"s}), 5);
  EXPECT_EQ(ErrorOf("InStr", {"x"s, "a"s, "a"s}), 13);
  EXPECT_EQ(ErrorOf("Chr", {256}), 5);
  EXPECT_EQ(ErrorOf("Asc", {""s}), 5);
  EXPECT_EQ(ErrorOf("String", {2, ""s}), 5);
  EXPECT_EQ(ErrorOf("Space", {2'000'000'000}), 7);
}

TEST(Functions, NumbersKeepTheirType) {
  Check({
      {"Abs", {-3}, 3},
      {"Abs", {Amount(-1)}, Amount(1)},
      {"Int", {-2.5}, -3.0},
      {"Int", {Amount(-25'000)}, Amount(-30'000)},
      {"Int", {Amount(9'223'372'036'854'775'807)}, Amount(9'223'372'036'854'770'000)},
      {"Int", {Moment("2007-03-15 08:30")}, Day(2007, 3, 15)},
      {"Fix", {-2.5}, -2.0},
      {"Fix", {Amount(-25'000)}, Amount(-20'000)},
      {"Round", {3.5}, 4.0},
      {"Round", {2.5}, 2.0},
      {"Round", {2.675, 2}, 2.68},
      {"Round", {-1.005, 2}, -1.0},
      {"Round", {1e20, 2}, 1e20},
      {"Round", {Amount(25'000)}, Amount(20'000)},
      {"Round", {Amount(-12'350), 1}, Amount(-12'000)},
      {"Round", {Amount(12'350), 2}, Amount(12'400)},
      {"Round", {Amount(12'345), 7}, Amount(12'345)},
      {"Round", {7, 2}, 7},
      {"Sgn", {-3.0}, -1},
      {"Sgn", {0.0}, 0},
      {"Sqr", {2.25}, 1.5},
      {"Val", {"12abc"s}, 12.0},
      {"Val", {" 1 615 Rua 9"s}, 1615.0},
      {"Val", {"-1.5e2x"s}, -150.0},
      {"Val", {"1.234"s}, 1.234},
      {"Val", {"12,5"s}, 12.0},
      {"Val", {"2e"s}, 2.0},
      {"Val", {"abc"s}, 0.0},
      {"Str", {12.5}, " 12.5"s},
      {"Str", {-0.5}, "-.5"s},
      {"Str", {0.0}, " 0"s},
  });
  EXPECT_EQ(ErrorOf("Abs", {std::numeric_limits<std::int32_t>::min()}), 6);
  EXPECT_EQ(ErrorOf("Round", {1.5, -1}), 5);
  EXPECT_EQ(ErrorOf("Sqr", {-1.0}), 5);
}

TEST(Functions, ConversionsReadAndWriteADecimalPoint) {
  Check({
      {"CStr", {12.5}, "12.5"s},
      {"CStr", {Amount(1)}, "0.0001"s},
      {"CStr", {true}, "-1"s},
      {"CStr", {Moment("2008-07-05 09:08:07")}, "05/07/2008 09:08:07"s},
      {"CStr", {Date(0.25)}, "06:00:00"s},
      {"CDbl", {"1.125"s}, 1.125},
      {"CDbl", {"1.234,5"s}, 1234.5},
      {"CDbl", {"1.234.567"s}, 1234567.0},
      {"CDbl", {"-1.5E+20"s}, -1.5e20},
      {"CCur", {"922337203685477.5807"s}, Amount(9'223'372'036'854'775'807)},
      {"CCur", {2.00015}, Amount(20'002)},
      {"CLng", {2.5}, 2},
      {"CLng", {"2.5"s}, 2},
      {"CInt", {-1.5}, -2},
      {"CByte", {255.4}, std::uint8_t{255}},
      {"CBool", {5}, true},
      {"CBool", {"False"s}, false},
      {"CDate", {"31/12/2008"s}, Day(2008, 12, 31)},
      {"CDate", {2.5}, Moment("1900-01-01 12:00")},
      {"IsDate", {"31/12/2008"s}, true},
      {"IsDate", {"31/11/2008"s}, false},
      {"IsDate", {Null{}}, false},
      {"IsNumeric", {"1.234,5"s}, true},
      {"IsNumeric", {"1e5"s}, true},
      {"IsNumeric", {"nan"s}, false},
      {"IsNumeric", {Null{}}, false},
  });
  EXPECT_EQ(ErrorOf("CInt", {32'768}), 6);
  EXPECT_EQ(ErrorOf("CByte", {-1}), 6);
  EXPECT_EQ(ErrorOf("CLng", {"abc"s}), 13);
  EXPECT_EQ(ErrorOf("CDbl", {"1e999"s}), 6);
  EXPECT_EQ(ErrorOf("CStr", {Null{}}), 94);
}

TEST(Functions, PartsOfDates) {
  const Date moment = Moment("2008-07-05 09:08:07");  // a Saturday
  Check({
      {"Year", {moment}, 2008},
      {"Month", {moment}, 7},
      {"Day", {moment}, 5},
      {"Hour", {moment}, 9},
      {"Minute", {moment}, 8},
      {"Second", {moment}, 7},
      {"Weekday", {moment}, 7},
      {"Weekday", {moment, 2}, 6},
      {"Weekday", {Date(-1)}, 6},
      {"DatePart", {"q"s, moment}, 3},
      {"DatePart", {"Y"s, moment}, 187},
      {"DatePart", {"w"s, moment, 7}, 1},
      {"DatePart", {"n"s, moment}, 8},
      {"DatePart", {"ww"s, Day(2008, 1, 5)}, 1},
      {"DatePart", {"ww"s, Day(2008, 1, 6)}, 2},
      {"DatePart", {"ww"s, Day(2008, 12, 31)}, 53},
      {"DatePart", {"ww"s, Day(2010, 1, 3), 2, 2}, 53},
      {"DatePart", {"ww"s, Day(2008, 12, 29), 2, 2}, 1},
      {"DatePart", {"ww"s, Day(2010, 1, 4), 2, 3}, 1},
      {"DatePart", {"ww"s, Day(2010, 1, 3), 2, 3}, 52},
      {"DateValue", {moment}, Day(2008, 7, 5)},
      {"TimeValue", {moment}, Moment("9:08:07")},
      {"MonthName", {3}, "março"s},
      {"MonthName", {3, true}, "mar"s},
      {"WeekdayName", {7}, "sábado"s},
      {"WeekdayName", {7, true, 2}, "dom"s},
  });
  EXPECT_EQ(ErrorOf("Weekday", {moment, 8}), 5);
  EXPECT_EQ(ErrorOf("DatePart", {"x"s, moment}), 5);
  EXPECT_EQ(ErrorOf("MonthName", {13}), 5);
}

TEST(Functions, DateArithmetic) {
  Check({
      {"DateSerial", {2008, 14, 1}, Day(2009, 2, 1)},
      {"DateSerial", {2008, 3, 0}, Day(2008, 2, 29)},
      {"DateSerial", {29, 1, 1}, Day(2029, 1, 1)},
      {"DateSerial", {30, 0, -1}, Day(1929, 11, 29)},
      {"TimeSerial", {6, -15, 30}, Moment("5:45:30")},
      {"DateAdd", {"yyyy"s, 1.0, Day(2008, 2, 29)}, Day(2009, 2, 28)},
      {"DateAdd", {"m"s, 1.0, Moment("2008-01-31 10:00")}, Moment("2008-02-29 10:00")},
      {"DateAdd", {"m"s, -13.0, Day(2008, 3, 31)}, Day(2007, 2, 28)},
      {"DateAdd", {"Q"s, 1.0, Day(2008, 11, 30)}, Day(2009, 2, 28)},
      {"DateAdd", {"ww"s, 2.0, Day(2008, 12, 25)}, Day(2009, 1, 8)},
      {"DateAdd", {"h"s, 30.0, Day(2008, 1, 1)}, Moment("2008-01-02 06:00")},
      {"DateAdd", {"s"s, -1.0, Day(1899, 12, 30)}, Moment("1899-12-29 23:59:59")},
      {"DateAdd", {"n"s, 1.0, Moment("1899-12-29 23:59:30")}, Moment("00:00:30")},
      {"DateDiff", {"m"s, Day(2008, 1, 31), Day(2008, 2, 1)}, 1},
      {"DateDiff", {"yyyy"s, Day(2008, 12, 31), Day(2009, 1, 1)}, 1},
      {"DateDiff", {"q"s, Day(2008, 6, 30), Day(2007, 7, 1)}, -3},
      {"DateDiff", {"d"s, Moment("2008-01-01 23:59"), Moment("2008-01-02 00:01")}, 1},
      {"DateDiff", {"w"s, Day(2008, 7, 1), Day(2008, 7, 14)}, 1},
      {"DateDiff", {"ww"s, Day(2008, 7, 5), Day(2008, 7, 6)}, 1},
      {"DateDiff", {"ww"s, Day(2008, 7, 5), Day(2008, 7, 6), 2}, 0},
      {"DateDiff", {"h"s, Moment("2008-01-01 10:59"), Moment("2008-01-01 11:01")}, 1},
      {"DateDiff", {"n"s, Moment("1899-12-29 23:59:59"), Moment("00:00:00")}, 1},
  });
  EXPECT_EQ(ErrorOf("DateAdd", {"d"s, 1.0, Day(9999, 12, 31)}), 5);
  EXPECT_EQ(ErrorOf("DateAdd", {"yyyy"s, -2000.0, Day(2008, 1, 1)}), 5);
  EXPECT_EQ(ErrorOf("DateAdd", {"mm"s, 1.0, Day(2008, 1, 1)}), 5);
  EXPECT_EQ(ErrorOf("DateDiff", {"s"s, Day(1900, 1, 1), Day(2008, 1, 1)}), 6);
}

TEST(Functions, TheClockShowsOneMoment) {
  const double before = Date::Now().Days();
  const double now = ToDate(Call("Now", {})).Days();
  const double today = ToDate(Call("Date", {})).Days();
  EXPECT_GE(now, before);
  EXPECT_LT(now - today, 1.0 + 1e-3);
  EXPECT_EQ(today, std::floor(today));
  EXPECT_LT(ToDate(Call("Time", {})).Days(), 1);
  for (const char* name : {"Now", "Date", "Time"}) EXPECT_FALSE(FindFunction(name)->constant);
}

TEST(Format, Numbers) {
  const std::vector<std::tuple<Variant, std::string, std::string>> cases{
      {1234567.891, "#,##0.00", "1,234,567.89"},
      {7, "000", "007"},
      {0.125, "0.00", "0.13"},
      {Amount(1'250), "0.00", "0.13"},
      {-0.125, "0.00", "-0.13"},
      {-0.001, "0.00", "0.00"},
      {1.005, "0.00", "1.01"},
      {0.5, "#.##", ".5"},
      {5, "#.##", "5."},
      {0, "#", ""},
      {12.5, ".00", "12.50"},
      {0.256, "0.0%", "25.6%"},
      {1234567, "#,##0,", "1,235"},
      {12345678901.0, "000-0000-0000", "123-4567-8901"},
      {1234.5, "R$ #,##0.00", "R$ 1,234.50"},
      {-1234.5, "R$ 0.00", "-R$ 1234.50"},
      {-5, "0;(0);\"zero\"", "(5)"},
      {0, "0;(0);\"zero\"", "zero"},
      {-5, "0;;\"zero\"", "-5"},
      {5, "0 \"m;2\" \\0", "5 m;2 0"},
      {1234.5, "0.00E+00", "1.23E+03"},
      {0.000999999, "0.0E-00", "1.0E-03"},
      {99.96, "0.0E+0", "1.0E+2"},
      {0, "0.0E+0", "0.0E+0"},
      {true, "0", "-1"},
      {"12.5"s, "0.00", "12.50"},
      {"abc"s, "0.00", "abc"},
      {12.5, "", "12.5"},
      {1234.5, "Standard", "1,234.50"},
      {1234.5, "fixed", "1234.50"},
      {0.5, "Percent", "50.00%"},
      {-2, "Currency", "-R$ 2.00"},
      {1, "Yes/No", "Sim"},
      {false, "True/False", "Falso"},
      {Null{}, "0.00", ""},
      {Day(1900, 1, 1), "0", "2"},
      {"ação"s, ">", "AÇÃO"},
  };
  for (const auto& [value, pattern, expected] : cases) {
    EXPECT_EQ(Shown(Call("Format", {value, pattern})), expected) << pattern;
  }
  EXPECT_EQ(Shown(Call("Format", {Amount(9'223'372'036'854'775'807), "#,##0.0000"s})), "922,337,203,685,477.5807");
}

TEST(Format, Dates) {
  const Date moment = Moment("2008-07-05 15:08:07");
  const std::vector<std::pair<std::string, std::string>> cases{
      {"yyyy-mm-dd hh:nn:ss", "2008-07-05 15:08:07"},
      {"d/m/yy", "5/7/08"},
      {"hh:mm", "15:08"},
      {"hh:mm mm", "15:08 07"},
      {"ddd dddd mmm mmmm", "sáb sábado jul julho"},
      {"q w ww y", "3 7 27 187"},
      {"h:nn AM/PM", "3:08 PM"},
      {"hh a/p", "03 p"},
      {"\"dia\" d \\d\\e m", "dia 5 de 7"},
      {"c", "05/07/2008 15:08:07"},
      {"ttttt", "15:08:07"},
      {"ddddd", "05/07/2008"},
      {"Short Date", "05/07/2008"},
      {"Long Date", "sábado, 5 de julho de 2008"},
      {"Medium Time", "03:08 PM"},
      {"Short Time", "15:08"},
      {"", "05/07/2008 15:08:07"},
  };
  for (const auto& [pattern, expected] : cases) {
    EXPECT_EQ(Shown(Call("Format", {moment, pattern})), expected) << pattern;
  }
  EXPECT_EQ(Shown(Call("Format", {"05/07/2008"s, "yyyymmdd"s})), "20080705");
  EXPECT_EQ(Shown(Call("Format", {39634.0, "dd/mm/yyyy"s})), "05/07/2008");
  EXPECT_EQ(Shown(Call("Format", {Moment("00:30"), "h AM/PM"s})), "12 AM");
  EXPECT_EQ(Shown(Call("Format", {Day(2008, 7, 5), "w"s, 2})), "6");
}

TEST(Like, PatternsOfDao) {
  const std::vector<std::tuple<std::string, std::string, bool>> cases{
      {"Parafuso", "p*", true},
      {"Tinta Azul", "?i*", true},
      {"Tinta Água", "Tinta ?gua", true},
      {"Tinta Água", "tinta [ab]*", false},
      {"A-1*0", "*[*]*", true},
      {"A-100", "*[*]*", false},
      {"lata [18 L]", "*[[]*", true},
      {"C_300", "C_3*", true},
      {"C-301", "C_3*", false},
      {"50% off", "50%*", true},
      {"A-100-X", "A-1*0*", true},
      {"", "*", true},
      {"", "", true},
      {"", "?", false},
      {"a", "", false},
      {"a1", "a#", true},
      {"ab", "a#", false},
      {"ação", "AÇÃO", true},
      {"acao", "ação", false},
      {"B", "[!a-c]", false},
      {"d", "[!a-c]", true},
      {"é", "[a-e]", false},
      {"é", "[a-f]", true},
      {"-", "[-a]", true},
      {"-", "[a-]", true},
      {"!", "[!]", true},
      {"!", "[a!]", true},
      {"abcbcd", "a*bcd", true},
      {"abcbc", "a*bcd", false},
      {"aaab", "*a*a*b", true},
      {"a ", "a", false},
      {"straße", "STRASSE", true},
      {"straße", "stra?e", true},
      {"xçyçz", "*ç?", true},
      {"ab", "a[]b", false},
      {"5", "[0-9]", true},
  };
  for (const auto& [text, pattern, expected] : cases) {
    EXPECT_EQ(Like(text, pattern), expected) << text << " LIKE " << pattern;
  }
  for (const char* broken : {"[", "a[b", "[a][", "[z-a]"}) {
    try {
      Like("a", broken);
      ADD_FAILURE() << broken;
    } catch (const Erro& erro) {
      EXPECT_EQ(erro.Numero(), 93) << broken;
    }
  }
}

TEST(Like, PrefixIsThePatternWithAStar) {
  for (const std::string text : {"1.1.02", "1.1", "Ação", "a*b", "straße", "x[1]", ""}) {
    for (const std::string prefix : {"1.1", "1.1.", "AÇ", "a*", "A?", "#.#", "stras", "x[[]", "", "zz"}) {
      EXPECT_EQ(LikePrefix(text, prefix), Like(text, prefix + "*")) << text << " LIKE " << prefix << "*";
    }
  }
}

}  // namespace
}  // namespace tsv::db::jet
