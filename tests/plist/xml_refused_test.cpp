#include <gtest/gtest.h>

#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

class XmlRefuses : public testing::TestWithParam<Refused> {};

TEST_P(XmlRefuses, theFile) { EXPECT_EQ(refusal(GetParam().bytes), GetParam().reason); }

const std::vector<Refused> documents = {
    {"AnEmptyFile", "", Reason::noObject},
    {"WhiteSpaceOnly", " \n\t\r", Reason::noObject},
    {"ADeclarationOnly", "<?xml version=\"1.0\"?>", Reason::noObject},
    {"AnEmptyPlistTag", "<plist/>", Reason::noObject},
    {"AnEmptyPlistElement", "<plist></plist>", Reason::noObject},
    {"AnEmptyPlistElementBeforeAnObject", "<plist></plist><true/>", Reason::noObject},
    {"TwoObjectsInAPlist", "<plist><true/><false/></plist>", Reason::severalObjects},
    {"TwoObjectsInAPlistInAnArray", "<array><true/><plist><true/><false/></plist></array>",
     Reason::severalObjects},
    {"TextBeforeTheRoot", "text<plist><true/></plist>", Reason::unexpectedText},
    {"TextInAnArray", "<array>text</array>", Reason::unexpectedText},
    {"TextInADictionary", "<dict>text</dict>", Reason::unexpectedText},
    {"TextInAPlist", "<plist>text</plist>", Reason::unexpectedText},
    {"AnHtmlPage", "<!DOCTYPE html><html><body>Not found</body></html>", Reason::unknownTag},
    {"Json", R"({"date": "2019-03-26"})", Reason::unexpectedText},
    {"TheOlderTextForm", "( { date = \"2019-03-26\"; } )", Reason::unexpectedText},
};
INSTANTIATE_TEST_SUITE_P(Document, XmlRefuses, testing::ValuesIn(documents), nameOfRow<Refused>);

const std::vector<Refused> declarations = {
    {"ADocumentTypeWithDeclarations", "<!DOCTYPE plist [<!ENTITY a 'b'>]><true/>",
     Reason::malformedDocumentType},
    {"ABracketAnywhereInADocumentType", "<!DOCTYPE plist PUBLIC \"a[b\"><true/>",
     Reason::malformedDocumentType},
    {"AnUnterminatedDocumentType", "<!DOCTYPE plist ", Reason::unexpectedEnd},
    {"ADocumentTypeAfterTheRootBegan", "<plist><!DOCTYPE plist><true/></plist>", Reason::malformedMarkup},
    {"AnotherDeclarationBeforeTheRoot", "<!ELEMENT plist><true/>", Reason::malformedDocumentType},
    {"AnUnterminatedComment", "<!-- a -- ><true/>", Reason::unexpectedEnd},
    {"AnUnterminatedCommentInAnArray", "<array><!-- a </array>", Reason::unexpectedEnd},
    {"AnUnterminatedProcessingInstruction", "<?a ><true/>", Reason::unexpectedEnd},
    {"AProcessingInstructionThatEndsInItsFirstCharacters", "<?><true/>", Reason::unexpectedEnd},
    {"ACommentInAString", "<string>a<!-- b --></string>", Reason::malformedMarkup},
    {"ACommentInAKey", "<dict><key><!-- b --></key><true/></dict>", Reason::malformedMarkup},
    {"AProcessingInstructionInAString", "<string>a<?b?></string>", Reason::malformedMarkup},
    {"CharacterDataInAnArray", "<array><![CDATA[a]]></array>", Reason::malformedMarkup},
    {"CharacterDataBeforeTheRoot", "<![CDATA[a]]><true/>", Reason::malformedDocumentType},
    {"CharacterDataInAnInteger", "<integer><![CDATA[1]]></integer>", Reason::malformedInteger},
    {"CharacterDataBehindAnInteger", "<integer>1<![CDATA[1]]></integer>", Reason::malformedMarkup},
    {"UnterminatedCharacterData", "<string><![CDATA[a]] ></string>", Reason::unexpectedEnd},
};
INSTANTIATE_TEST_SUITE_P(Markup, XmlRefuses, testing::ValuesIn(declarations), nameOfRow<Refused>);

const std::vector<Refused> cutShort = {
    {"InAnOpeningTag", "<array", Reason::unexpectedEnd},
    {"BehindTheFirstCharacterOfATag", "<array><", Reason::unexpectedEnd},
    {"BehindTheFirstTwoCharactersOfAClosingTag", "<array></", Reason::unexpectedEnd},
    {"InTheNameOfAClosingTag", "<array></arr", Reason::unexpectedEnd},
    {"BehindTheNameOfAClosingTag", "<array></array", Reason::unexpectedEnd},
    {"BehindTrue", "<true>", Reason::unexpectedEnd},
    {"BehindTheFirstCharacterOfTheClosingTagOfTrue", "<true><", Reason::unexpectedEnd},
    {"BehindTheFirstCharactersOfAnotherElementInTrue", "<true><b", Reason::malformedMarkup},
    {"InAnInteger", "<integer>1", Reason::unexpectedEnd},
    {"BehindTheFirstCharacterOfTheClosingTagOfAnInteger", "<integer>1<", Reason::unexpectedEnd},
    {"InAString", "<string>a", Reason::unexpectedEnd},
    {"BehindTheOpeningOfAComment", "<!--", Reason::unexpectedEnd},
    {"BehindTheNameOfADocumentType", "<!DOCTYPE", Reason::unexpectedEnd},
    {"BehindTheOpeningOfAProcessingInstruction", "<?", Reason::unexpectedEnd},
};
INSTANTIATE_TEST_SUITE_P(CutShort, XmlRefuses, testing::ValuesIn(cutShort), nameOfRow<Refused>);

const std::vector<Refused> tags = {
    {"AnUnknownTag", "<plist><text>a</text></plist>", Reason::unknownTag},
    {"ASet", "<set><true/></set>", Reason::unknownTag},
    {"ATagInAnotherCase", "<String>a</String>", Reason::unknownTag},
    {"ATagWithAPrefix", "<p:string>a</p:string>", Reason::unknownTag},
    {"ASpaceBeforeATagsName", "< string>a</string>", Reason::unknownTag},
    {"ATagWithoutName", "<>a</>", Reason::unknownTag},
    {"ATagThatOnlyBeginsLikeAKnownOne", "<strings>a</strings>", Reason::unknownTag},
    {"AMismatchedClosingTag", "<string>a</key>", Reason::mismatchedClosingTag},
    {"AClosingTagInAnotherCase", "<string>a</String>", Reason::mismatchedClosingTag},
    {"AClosingTagThatGoesOn", "<string>a</strings>", Reason::mismatchedClosingTag},
    {"AClosingTagWithAnAttribute", "<string>a</string a='b'>", Reason::mismatchedClosingTag},
    {"ASpaceBeforeAClosingTagsName", "<string>a</ string>", Reason::mismatchedClosingTag},
    {"AMismatchedClosingTagOfAContainer", "<array></dict>", Reason::mismatchedClosingTag},
    {"AMissingClosingTag", "<plist><array><true/></plist>", Reason::mismatchedClosingTag},
    {"AClosingTagThatNothingOpened", "</plist>", Reason::mismatchedClosingTag},
    {"AClosingTagWithoutName", "</>>", Reason::mismatchedClosingTag},
    {"AnElementInAString", "<string>a<b/></string>", Reason::malformedMarkup},
    {"ASpaceInTrue", "<true> </true>", Reason::malformedMarkup},
    {"TextInFalse", "<false>no</false>", Reason::malformedMarkup},
    {"AnEmptyIntegerTag", "<integer/>", Reason::contentMissing},
    {"AnEmptyRealTag", "<real/>", Reason::contentMissing},
    {"AnEmptyDateTag", "<date/>", Reason::contentMissing},
    {"AnEmptyDataTag", "<data/>", Reason::contentMissing},
    {"AKeyWithoutValue", "<dict><key>a</key></dict>", Reason::valueMissing},
    {"AValueWithoutKey", "<dict><string>a</string></dict>", Reason::keyExpected},
    {"TwoValuesForAKey", "<dict><key>a</key><true/><true/></dict>", Reason::keyExpected},
    {"AContainerAsKey", "<dict><array/><true/></dict>", Reason::keyExpected},
    {"APlistElementAsKey", "<dict><plist><key>a</key></plist><true/></dict>", Reason::keyExpected},
};
INSTANTIATE_TEST_SUITE_P(Tag, XmlRefuses, testing::ValuesIn(tags), nameOfRow<Refused>);

const std::vector<Refused> texts = {
    {"AnUnknownEntity", "<string>&nbsp;</string>", Reason::malformedReference},
    {"AnEntityInAnotherCase", "<string>&AMP;</string>", Reason::malformedReference},
    {"ABareAmpersand", "<string>a & b</string>", Reason::malformedReference},
    {"AnAmpersandAtTheEnd", "<string>a &</string>", Reason::malformedReference},
    {"AnEntityWithoutSemicolon", "<string>&amp</string>", Reason::malformedReference},
    {"ANumericReferenceWithoutSemicolon", "<string>&#65</string>", Reason::malformedReference},
    {"ANumericReferenceWithoutDigits", "<string>&#;</string>", Reason::malformedReference},
    {"AHexadecimalReferenceWithoutDigits", "<string>&#x;</string>", Reason::malformedReference},
    {"AHexadecimalReferenceWithCapitalX", "<string>&#X41;</string>", Reason::malformedReference},
    {"AHexadecimalDigitInADecimalReference", "<string>&#4A;</string>", Reason::malformedReference},
    {"AReferenceToAHighSurrogate", "<string>&#xD83D;</string>", Reason::invalidCharacter},
    {"AReferenceToALowSurrogate", "<string>&#57343;</string>", Reason::invalidCharacter},
    {"AReferenceAbove10FFFF", "<string>&#x110000;</string>", Reason::invalidCharacter},
    {"AReferenceThatWouldOverflow", "<string>&#x100000000000000041;</string>", Reason::invalidCharacter},
    {"AStrayContinuationByte", "<string>a\x80</string>", Reason::invalidUtf8},
    {"AnInvalidByte", "<string>\xFF</string>", Reason::invalidUtf8},
    {"AnOverlongFormOf2Bytes", "<string>\xC0\xAF</string>", Reason::invalidUtf8},
    {"AnOverlongFormOf3Bytes", "<string>\xE0\x9F\xBF</string>", Reason::invalidUtf8},
    {"AnOverlongFormOf4Bytes", "<string>\xF0\x8F\xBF\xBF</string>", Reason::invalidUtf8},
    {"AnEncodedSurrogate", "<string>\xED\xA0\x80</string>", Reason::invalidUtf8},
    {"ACharacterAbove10FFFF", "<string>\xF4\x90\x80\x80</string>", Reason::invalidUtf8},
    {"ALeadByteAboveF4", "<string>\xF5\x80\x80\x80</string>", Reason::invalidUtf8},
    {"Utf8TruncatedByTheTag", "<string>\xE2\x82</string>", Reason::invalidUtf8},
    {"Utf8TruncatedByTheEnd", "<string>\xE2\x82", Reason::invalidUtf8},
    {"InvalidUtf8InAKey", "<dict><key>\xC3</key><true/></dict>", Reason::invalidUtf8},
    {"InvalidUtf8BesideAReference", "<string>&amp;\xC3</string>", Reason::invalidUtf8},
    {"InvalidUtf8InCharacterData", "<string><![CDATA[\xC3]]></string>", Reason::invalidUtf8},
};
INSTANTIATE_TEST_SUITE_P(Text, XmlRefuses, testing::ValuesIn(texts), nameOfRow<Refused>);

Refused integer(const char* name, const std::string& text, Reason reason = Reason::malformedInteger) {
  return {name, "<integer>" + text + "</integer>", reason};
}
Refused real(const char* name, const std::string& text) {
  return {name, "<real>" + text + "</real>", Reason::malformedReal};
}
Refused date(const char* name, const std::string& text) {
  return {name, "<date>" + text + "</date>", Reason::malformedDate};
}

const std::vector<Refused> scalars = {
    integer("AnEmptyInteger", ""),
    integer("AnIntegerOfSpaceOnly", " "),
    integer("AnIntegerOfASignOnly", "-"),
    integer("TwoSigns", "+-1"),
    integer("ABackspaceBeforeAnInteger", "\b42"),
    integer("AnIntegerWithTrailingSpace", "42 "),
    integer("AHexadecimalPrefixAlone", "0x"),
    integer("AnIntegerWithAFraction", "4.2"),
    integer("AnIntegerWithALetter", "42q"),
    integer("AHexadecimalDigitInADecimalInteger", "4a"),
    integer("AnIntegerAbove64Bits", "18446744073709551616", Reason::integerOutOfRange),
    integer("AHexadecimalIntegerAbove64Bits", "0x10000000000000000", Reason::integerOutOfRange),
    integer("AnIntegerBelow63Bits", "-9223372036854775809", Reason::integerOutOfRange),
    integer("AnIntegerOfFortyDigits", "1000000000000000000000000000000000000000", Reason::integerOutOfRange),
    real("AnEmptyReal", ""),
    real("ARealOfSpaceOnly", " "),
    real("ARealWithTrailingSpace", "1.5 "),
    real("AHexadecimalReal", "0x10"),
    real("ARealWithTwoPoints", "1.2.3"),
    real("ARealOfAPointOnly", "."),
    real("AnExponentWithoutDigits", "1e+"),
    real("TheWordInfinite", "infinite"),
    real("ASignedNotANumber", "-nan"),
    real("ASpaceBeforeAWord", " inf"),
    real("ARealWithACommaForThePoint", "1,5"),
    {"ABrokenReferenceInAReal", "<real>1&;</real>", Reason::malformedReference},
    {"AByteFrom80InData", "<data>AAAA\x80</data>", Reason::malformedData},
    date("AnEmptyDate", ""),
    date("ADateWithoutTime", "2019-03-26"),
    date("ADateWithoutZ", "2019-03-26T10:11:12"),
    date("ADateWithAnOffset", "2019-03-26T10:11:12+00:00"),
    date("ADateWithAFraction", "2019-03-26T10:11:12.5Z"),
    date("ASpaceBeforeADate", " 2019-03-26T10:11:12Z"),
    date("ASpaceAfterADate", "2019-03-26T10:11:12Z "),
    date("ASpaceForTheT", "2019-03-26 10:11:12Z"),
    date("LowerCaseInADate", "2019-03-26t10:11:12z"),
    date("APointBehindAYear", "2019.03-26T10:11:12Z"),
    date("AOneDigitMonth", "2019-3-26T10:11:12Z"),
    date("AOneDigitDay", "2019-03-6T10:11:12Z"),
    date("AOneDigitHour", "2019-03-26T1:11:12Z"),
    date("AOneDigitMinute", "2019-03-26T10:1:12Z"),
    date("AOneDigitSecond", "2019-03-26T10:11:2Z"),
    date("AYearOf3Digits", "999-03-26T10:11:12Z"),
    date("ALetterInAYear", "2O19-03-26T10:11:12Z"),
    date("APositiveSignBeforeAYear", "+2019-03-26T10:11:12Z"),
    date("MonthZero", "2019-00-26T10:11:12Z"),
    date("Month13", "2019-13-26T10:11:12Z"),
    date("AYearOf10Digits", "1234567890-01-01T00:00:00Z"),
    date("AYearOf30Digits", "123456789012345678901234567890-01-01T00:00:00Z"),
};
INSTANTIATE_TEST_SUITE_P(Scalar, XmlRefuses, testing::ValuesIn(scalars), nameOfRow<Refused>);

}  // namespace
}  // namespace pelmarix::plist
