#pragma once

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
