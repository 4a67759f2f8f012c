// StringFunctions: the stateless text service of the suite's programs: fixed-width padding and
// centring, picture formatting, input cleaning, bar-code check digits, OEM conversion for receipt
// printers and small utilities.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// Every member is virtual and the members that build on others call them on this object, so a
// derived class that changes one (PadL, StrZero, ...) changes the ones built on it too.
class StringFunctions : public PublicClass<StringFunctions> {
 public:
  static constexpr StringView kClassName = u"StringFunctions";

  StringFunctions() = default;

  // `str` right-aligned in a field of `strLen` zeros; never cut. The count must fit 16 bits
  // (else 6). `strLen` is by reference but left unchanged.
  virtual String PadZeroRight(StringView str, int16_t& strLen);
  // The characters whose ANSI code is 32 to 254.
  virtual String ReturnOnlyCharacteres(StringView strString);
  // The characters "0" to "9".
  virtual String ReturnOnlyDigits(StringView Text);
  // The ANSI codes as three-digit groups joined by "/" ("AB" gives "065/066").
  virtual String ConvertStringToDec(StringView strString);
  // The reverse: codes split by "/" (or, with none left, "\") back to characters; a token that
  // is no number raises 13, a code without a character 5.
  virtual String ConvertDecToString(StringView Sequencia);
  // The text before its first null, trimmed of spaces.
  virtual String StripNulls(StringView OriginalStr);
  // The integer part of `Number` zero-filled on the left to `Digits` characters; a longer number
  // keeps its first digits and a negative one its sign after the zeros ("00-5").
  virtual String StrZero(double Number, int16_t Digits);
  // The text's UTF-16 little-endian bytes and one 0 more, in a Byte array from 0.
  virtual Variant StringToBytes(StringView iStr);
  // True when the text holds only "0" to "9" (an empty text too).
  virtual bool HaveOnlyDigits(StringView strString);
  // Overwrites `CharactersReplaced` characters from `StartReplacement` with `Replacement` cut or
  // space-filled to that width; space-extends a short text first. A start below 1 changes nothing.
  virtual String Stuff(StringView Expression, int16_t StartReplacement, int16_t CharactersReplaced,
                       StringView Replacement);
  // The text fitted to `Size`: filled on the left with the character of ANSI code `AsciiChar`,
  // or cut to its first `Size` characters.
  virtual String PadL(StringView Text, int16_t Size, int16_t AsciiChar = 32);
  // The same, filled on the right.
  virtual String PadR(StringView Text, int16_t Size, int16_t AsciiChar = 32);
  // The trimmed text centred in `TextLength` spaces (the odd space on the right), or cut.
  virtual String StrCenter(StringView Text, int16_t TextLength);
  // The value in a picture of fixed width: a numeric picture ("#", "0", ",", ".") right-aligns
  // the formatted number or writes "*" for each digit when the value exceeds the picture; a text
  // picture ("X", "@", "!") fits the text to the picture's width.
  virtual String TRAN(const Variant& Valor, StringView String_Formatacao);
  // The EAN/UPC mod-10 check digit of the data digits; 0 for text with other characters.
  virtual int16_t GetBarCodeCheckDigit(StringView Barcode);
  // The text in the locale's OEM character set, each OEM byte read back as an ANSI character.
  // `CodePage` 0 first replaces the accented letters by plain ones; any other value only turns
  // that off (it names no code page).
  virtual String GetOEMString(int16_t CodePage, StringView CharString);
  // The caption without its "&" accelerator marks.
  virtual String GetCleanCaption(StringView Value);
  // The elements 0..UBound of a Variant array as texts, in a String array from 0; an empty
  // source gives an unallocated array. Raises 9 when the source starts above 0, 94 for Null.
  virtual Variant ParamArrayToString(Variant& Values);
  // Occurrences of `FindMe` in `Target`, overlapping ones included, by exact comparison.
  virtual int32_t HowManyStrings(StringView Target, StringView FindMe);
  // A new random (version 4) identifier as 32 upper-case hexadecimal digits of its bytes in
  // memory order; empty when the system gives no random bytes.
  virtual String CreateGUID();

  // The published member table.
  static ClassInfo describe();

 private:
  // Replaces the accented Latin letters of the Portuguese and Spanish alphabets by plain ones.
  String RemoveAccents(StringView text);
};

}  // namespace ravelin
