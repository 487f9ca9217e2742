#include <gtest/gtest.h>

#include <limits>

#include "common/Errors.h"
#include "db/EngineError.h"
#include "types/AutomationValues.h"
#include "types/Erro.h"

namespace tsv::automation {
namespace {

TEST(AutomationValues, KeepMoneyAndMomentsExactly) {
  for (const std::int64_t units : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
                                   std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(CurrencyToAutomation(CurrencyFromAutomation(units)), units);
  }
  EXPECT_EQ(CurrencyToAutomation(*Currency::FromText("-0,0001")), -1);

  const Date noon = Date::FromCivil({2008, 7, 5, 12, 0, 0});
  EXPECT_EQ(DateToAutomation(noon), 39634.5);
  EXPECT_EQ(DateFromAutomation(39634.5), noon);
}

TEST(AutomationValues, RefuseMomentsOutsideTheCalendar) {
  EXPECT_EQ(DateFromAutomation(-657434.5).ToIso(), "0100-01-01 12:00:00");
  EXPECT_EQ(DateFromAutomation(2958465.5).ToIso(), "9999-12-31 12:00:00");
  for (const double days :
       {-657435.0, 2958466.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_THROW(DateFromAutomation(days), Erro) << days;
  }
}

TEST(AutomationValues, TruthIsMinusOneAndAnythingButZero) {
  EXPECT_EQ(BoolToAutomation(true), -1);
  EXPECT_EQ(BoolToAutomation(false), 0);
  EXPECT_TRUE(BoolFromAutomation(1));
  EXPECT_FALSE(BoolFromAutomation(0));
}

TEST(AutomationValues, CarryTextBothWays) {
  EXPECT_EQ(TextToAutomation("Previsão à vista €"), u"Previsão à vista €");
  EXPECT_EQ(TextToAutomation("\xF0\x9F\x8D\x9E"), (std::u16string{0xD83C, 0xDF5E}));
  for (const char* text : {"", "São João", "\xF0\x9F\x8D\x9E pão", "\xEF\xBF\xBF"}) {
    EXPECT_EQ(TextFromAutomation(TextToAutomation(text)), text);
  }
}

TEST(AutomationValues, ShowDamagedTextWithoutLosingItsNeighbours) {
  EXPECT_EQ(TextFromAutomation(std::u16string{u'a', 0xD83C, u'b'}),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(TextFromAutomation(std::u16string{u'a', 0xDF5E}), "a\xEF\xBF\xBD");
  EXPECT_EQ(TextFromAutomation(std::u16string{u'a', 0xD83C}), "a\xEF\xBF\xBD");
  EXPECT_EQ(TextToAutomation("a\xE3z"), u"aãz");
}

TEST(AutomationValues, GiveClientsTheErrorNumbersTheyKnow) {
  EXPECT_EQ(HresultOf(TS_ERRO_LANCAMENTO), TS_ERRO_LANCAMENTO);
  EXPECT_EQ(static_cast<std::uint32_t>(HresultOf(6)), 0x800A0006u);
  EXPECT_EQ(static_cast<std::uint32_t>(HresultOf(static_cast<std::int32_t>(db::EngineError::Locked))), 0x800A0CBCu);
  for (const std::int32_t number :
       {6, 13, 94, 3022, 3420, std::int32_t{TS_ERRO_LOGIN}, std::int32_t{TS_ERRO_ESTORNO}}) {
    EXPECT_EQ(NumberOf(HresultOf(number)), number);
    EXPECT_LT(HresultOf(number), 0) << "a failure for every client";
  }
}

}  // namespace
}  // namespace tsv::automation
