#include "plist/error.h"

namespace pelmarix::plist {

std::string_view description(Reason reason) {
  switch (reason) {
    case Reason::tooLarge:
      return "The property list is too large.";
    case Reason::nestedTooDeep:
      return "Containers are nested more than 512 deep.";
    case Reason::unknownEncoding:
      return "The declared encoding is not one of those that can be read.";
    case Reason::wrongEncoding:
      return "The bytes are not in the encoding that they are said to be in.";
    case Reason::invalidUtf8:
      return "The text is not valid UTF-8.";
    case Reason::noObject:
      return "There is no object.";
    case Reason::severalObjects:
      return "There is more than one object where one is allowed.";
    case Reason::unexpectedEnd:
      return "The file ends too early.";
    case Reason::unexpectedText:
      return "There is text where only elements are allowed.";
    case Reason::malformedDocumentType:
      return "The document type is not one that can be read.";
    case Reason::malformedMarkup:
      return "The markup is not allowed in this place.";
    case Reason::unknownTag:
      return "The tag is unknown.";
    case Reason::mismatchedClosingTag:
      return "The closing tag does not match the open element.";
    case Reason::keyExpected:
      return "A key is missing in a dictionary.";
    case Reason::valueMissing:
      return "A key in a dictionary has no value.";
    case Reason::contentMissing:
      return "The element must have content.";
    case Reason::malformedReference:
      return "The entity or character reference is malformed or unknown.";
    case Reason::invalidCharacter:
      return "The character reference does not name a Unicode character.";
    case Reason::malformedInteger:
      return "The integer is malformed.";
    case Reason::integerOutOfRange:
      return "The integer does not fit in 64 bits.";
    case Reason::malformedReal:
      return "The real number is malformed.";
    case Reason::malformedDate:
      return "The date is malformed.";
    case Reason::malformedData:
      return "The data holds bytes that are not ASCII.";
    case Reason::tooShort:
      return "The file is too short for a binary property list.";
    case Reason::noObjects:
      return "The trailer says that there are no objects.";
    case Reason::badTopObject:
      return "The top object is not one of the objects.";
    case Reason::badTableStart:
      return "The offset table does not lie between the header and the trailer.";
    case Reason::badWidth:
      return "Offsets and references must be 1 to 8 bytes wide.";
    case Reason::lengthDiffers:
      return "The offset table and the trailer do not end where the file ends.";
    case Reason::referenceTooNarrow:
      return "References are too narrow to number all objects.";
    case Reason::offsetTooNarrow:
      return "Offsets are too narrow to reach the offset table.";
    case Reason::badOffset:
      return "An offset leads outside the objects.";
    case Reason::unknownMarker:
      return "The object is of an unknown kind or size.";
    case Reason::badCount:
      return "The count of an object is not an integer.";
    case Reason::objectTooLong:
      return "An object reaches past the end of the objects.";
    case Reason::badReference:
      return "A reference leads to no object.";
    case Reason::badUid:
      return "A UID does not fit in 32 bits.";
    case Reason::keyNotString:
      return "A key of a dictionary is not a string.";
    case Reason::cycle:
      return "A container holds itself.";
    case Reason::tooMuchOverlap:
      return "Objects overlap so much that they would be far larger than the file.";
  }
  return {};
}

std::string description(const Error& error) {
  std::string text(description(error.reason));
  text += " (";
  if (error.line != 0) text.append("line ").append(std::to_string(error.line)).append(", ");
  return text.append("byte ").append(std::to_string(error.offset)).append(")");
}

}  // namespace pelmarix::plist
