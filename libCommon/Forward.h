#pragma once

/// The classes of this library, for whoever only names them.
namespace vrx {

class String;
class VRXValue;
class Unit;
class UnitMagnitude;
class DiscreteMeasurement;
class NonDiscreteMeasurement;
class DateTime;
class Logger;
class XmlNode;
class XmlElement;
class XmlText;
class XmlComment;
class XmlDocument;

}  // namespace vrx
