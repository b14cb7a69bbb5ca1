#include "component/arguments.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "component/AutomationSheet.h"
#include "component/invoke.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

/// References to references and objects whose value is an object end somewhere, or are no value at all.
constexpr int deepest = 8;

constexpr VARTYPE variantReference = VT_BYREF | VT_VARIANT;

/// The data of an array, held in place for as long as this lives.
class ArrayData {
 public:
  explicit ArrayData(SAFEARRAY* array) : array_(array) {
    if (FAILED(SafeArrayAccessData(array, &data_))) raise(FailureNumber::OutOfMemory);
  }
  ArrayData(const ArrayData&) = delete;
  ArrayData& operator=(const ArrayData&) = delete;
  ~ArrayData() { SafeArrayUnaccessData(array_); }

  template <class T>
  const T* as() const {
    return static_cast<const T*>(data_);
  }

 private:
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

Index extent(const SAFEARRAY& array, int dimension) {
  // Bounds are stored from the last dimension to the first.
  return static_cast<Index>(array.rgsabound[array.cDims - dimension].cElements);
}

/// Reads one argument.
class Reader {
 public:
  Reader(const Argument& argument, LCID locale) : argument_(argument), locale_(locale) {}

  Value scalar(const VARIANT& passed) {
    switch (argument_.type) {
      case ValueType::Double:
        return number(passed);
      case ValueType::Integer:
        return toInteger<std::int16_t>(number(passed));
      case ValueType::Flag:
        return flag(passed);
      case ValueType::Text:
        return text(passed);
      case ValueType::Mixed:
        return mixed(passed);
      case ValueType::Sheet:
        return sheet(passed);
      default:
        mismatch("cannot be passed");
    }
  }

  Value array(const VARIANT& passed) {
    switch (argument_.type) {
      case ValueType::Doubles:
        return arrayOf<double>(passed);
      case ValueType::Texts:
        return arrayOf<std::string>(passed);
      default:
        return arrayOf<Variant>(passed);
    }
  }

 private:
  [[noreturn]] void mismatch(const std::string& why) const {
    std::string where = argument_.name;
    if (inArray_ && dimensions_ == 1) where += '(' + std::to_string(place_ + 1) + ')';
    if (inArray_ && dimensions_ == 2) {
      where += '(' + std::to_string(place_ % rows_ + 1) + ", " + std::to_string(place_ / rows_ + 1) + ')';
    }
    raise(FailureNumber::TypeMismatch, where + ' ' + why);
  }

  /// Follows references to the variant that holds the value.
  const VARIANT& followed(const VARIANT& passed) const {
    const VARIANT* at = &passed;
    for (int depth = 0; at->vt == variantReference; ++depth) {
      if (at->pvarVal == nullptr || depth == deepest) mismatch("is a reference to nothing");
      at = at->pvarVal;
    }
    if ((at->vt & VT_BYREF) != 0 && at->byref == nullptr) mismatch("is a reference to nothing");
    return *at;
  }

  /// Counts one object within another for as long as it lives.
  class Within {
   public:
    explicit Within(int& depth) : depth_(++depth) {}
    Within(const Within&) = delete;
    Within& operator=(const Within&) = delete;
    ~Within() { --depth_; }

   private:
    int& depth_;
  };

  /// How many areas a range has; 1 for every other object.
  static double areaCount(IDispatch* object) {
    const Member areas(object, L"Areas");
    if (!areas.exists()) return 1;
    try {
      const OwnedVariant held = areas.get();
      if (held.vt != VT_DISPATCH || held.pdispVal == nullptr) return 1;
      OwnedVariant count = Member(held.pdispVal, L"Count").get();
      return SUCCEEDED(VariantChangeType(&count, &count, 0, VT_R8)) ? count.dblVal : 1;
    } catch (const Failure&) {
      return 1;  // something else of that name
    }
  }

  /// What an object holds: its `Value`, or its default property where it has none of that name.
  OwnedVariant objectValue(IDispatch* object) {
    if (object == nullptr) mismatch("is an object that was never set");
    if (objects_ > deepest) mismatch("is an object whose value is an object");
    // Deliberate: its value would be that of the first area, and the rest of the data be lost without a word.
    if (const double areas = areaCount(object); areas > 1) {
      mismatch("is a range of " + numberText(areas) + " areas where one is needed");
    }
    try {
      const Member value(object, L"Value");
      const DISPID byDefault = DISPID_VALUE;
      return value.exists() ? value.get() : Member(object, byDefault).get();
    } catch (const Failure& failure) {
      mismatch("is an object without a value: " + failure.text());
    }
  }

  /// Calls `use` with the plain value: no reference, no object.
  template <class Use>
  std::invoke_result_t<Use, const VARIANT&> plain(const VARIANT& passed, Use use) {
    const VARIANT& held = followed(passed);
    if (held.vt == VT_DISPATCH || held.vt == (VT_BYREF | VT_DISPATCH)) {
      const Within within(objects_);
      const OwnedVariant value = objectValue(held.vt == VT_DISPATCH ? held.pdispVal : *held.ppdispVal);
      return plain(value, use);
    }
    if ((held.vt & VT_BYREF) == 0) return use(held);
    const auto type = static_cast<VARTYPE>(held.vt & ~VT_BYREF);
    OwnedVariant copy;
    if (type == VT_EMPTY || (type != VT_ERROR && !isPlainType(type)) ||
        FAILED(VariantCopyInd(&copy, const_cast<VARIANT*>(&held)))) {
      mismatch("is not one value");
    }
    return use(copy);
  }

  void refuseWhatHoldsNoValue(const VARIANT& value) const {
    if (value.vt == VT_NULL) mismatch("holds no value");
    if (value.vt == VT_ERROR) mismatch("holds an error value");
    if ((value.vt & VT_ARRAY) != 0) mismatch("is an array where one value is needed");
  }

  static bool isPlainType(VARTYPE type) {
    switch (type) {
      case VT_EMPTY:
      case VT_I1:
      case VT_I2:
      case VT_I4:
      case VT_I8:
      case VT_INT:
      case VT_UI1:
      case VT_UI2:
      case VT_UI4:
      case VT_UI8:
      case VT_UINT:
      case VT_R4:
      case VT_R8:
      case VT_CY:
      case VT_DATE:
      case VT_DECIMAL:
      case VT_BSTR:
      case VT_BOOL:
        return true;
      default:
        return false;
    }
  }

  OwnedVariant converted(const VARIANT& value, VARTYPE type, LCID locale, const char* what) const {
    refuseWhatHoldsNoValue(value);
    if (!isPlainType(value.vt)) mismatch(std::string("is no ") + what);
    OwnedVariant result;
    const HRESULT outcome = VariantChangeTypeEx(&result, const_cast<VARIANT*>(&value), locale, 0, type);
    if (outcome == DISP_E_OVERFLOW) raise(FailureNumber::Overflow, argument_.name + " is too large");
    if (FAILED(outcome)) mismatch(std::string("is no ") + what);
    return result;
  }

  double finite(double value) const {
    if (!std::isfinite(value)) mismatch("is not a finite number");
    return value;
  }

  /// Nothing, as an element or as the value of a range. A variable that holds nothing is 0, as in all of
  /// automation.
  bool isEmptyCell(const VARIANT& value) const { return value.vt == VT_EMPTY && (inArray_ || objects_ > 0); }

  double number(const VARIANT& passed) {
    return plain(passed, [this](const VARIANT& value) {
      if (value.vt == VT_R8) return finite(value.dblVal);
      if (isEmptyCell(value)) mismatch("is empty where a number is needed");
      return finite(converted(value, VT_R8, locale_, "number").dblVal);
    });
  }

  bool flag(const VARIANT& passed) {
    return plain(passed, [this](const VARIANT& value) {
      if (isEmptyCell(value)) mismatch("is empty where a flag is needed");
      return converted(value, VT_BOOL, locale_, "flag").boolVal != VARIANT_FALSE;
    });
  }

  std::string text(const VARIANT& passed) {
    return plain(passed, [this](const VARIANT& value) -> std::string {
      switch (value.vt) {
        case VT_BSTR:
          return utf8(value.bstrVal);
        case VT_EMPTY:
          return {};
        case VT_BOOL:
          return Variant::flag(value.boolVal != VARIANT_FALSE).toText();
        case VT_DATE:
          return utf8(converted(value, VT_BSTR, locale_, "text").bstrVal);
        case VT_I8:  // has more digits than a double: numbers of parts are not to become one label
        case VT_UI8:
        case VT_R4:  // has fewer digits than a double: 0.1 is not to read 0.100000001490116
          return utf8(converted(value, VT_BSTR, LOCALE_INVARIANT, "text").bstrVal);
        default:
          return numberText(finite(converted(value, VT_R8, locale_, "text").dblVal));
      }
    });
  }

  Variant mixed(const VARIANT& passed) {
    return plain(passed, [this](const VARIANT& value) -> Variant {
      if (value.vt == VT_EMPTY) return {};
      if (value.vt == VT_BSTR) return utf8(value.bstrVal);
      if (value.vt == VT_BOOL) return Variant::flag(value.boolVal != VARIANT_FALSE);
      return finite(converted(value, VT_R8, locale_, "number, text or flag").dblVal);
    });
  }

  std::shared_ptr<Sheet> sheet(const VARIANT& passed) {
    const VARIANT& held = followed(passed);
    IDispatch* object = held.vt == VT_DISPATCH                ? held.pdispVal
                        : held.vt == (VT_BYREF | VT_DISPATCH) ? *held.ppdispVal
                                                              : nullptr;
    if (object == nullptr) mismatch("is no worksheet");
    return std::make_shared<AutomationSheet>(HostObject(object));
  }

  template <class T>
  T element(const VARIANT& value) {
    if constexpr (std::is_same_v<T, double>) return number(value);
    if constexpr (std::is_same_v<T, std::string>) return text(value);
    if constexpr (std::is_same_v<T, Variant>) return mixed(value);
  }

  template <class T>
  Array<T> arrayOf(const VARIANT& passed) {
    const VARIANT& held = followed(passed);
    if (held.vt == VT_EMPTY) return {};
    return arrayIn<T>(held);
  }

  /// As `arrayOf`, but what holds nothing is an empty cell.
  template <class T>
  Array<T> arrayIn(const VARIANT& held) {
    if (held.vt == VT_DISPATCH || held.vt == (VT_BYREF | VT_DISPATCH)) {
      const Within within(objects_);
      const OwnedVariant value = objectValue(held.vt == VT_DISPATCH ? held.pdispVal : *held.ppdispVal);
      return arrayIn<T>(followed(value));
    }
    inArray_ = true;
    rows_ = 1;
    if ((held.vt & VT_ARRAY) == 0) {
      dimensions_ = argument_.shape == Shape::Table ? 2 : 1;
      return shaped<T>(1, 1, dimensions_, [&](std::vector<T>& out) { out.push_back(element<T>(held)); });
    }
    SAFEARRAY* array = (held.vt & VT_BYREF) == 0 ? held.parray : *held.pparray;
    return array == nullptr ? Array<T>() : arrayFrom<T>(array, held.vt & VT_TYPEMASK);
  }

  template <class T>
  Array<T> arrayFrom(SAFEARRAY* array, VARTYPE type) {
    inArray_ = false;
    if (array->cDims < 1 || array->cDims > 2) {
      mismatch("must be a " + inWords(argument_.type, argument_.shape) + ", not an array of " +
               std::to_string(array->cDims) + " dimensions");
    }
    VARTYPE own = type;
    if (SUCCEEDED(SafeArrayGetVartype(array, &own)) && own != type) mismatch("is an array of another type");
    int dimensions = array->cDims;
    Index rows = extent(*array, 1);
    Index columns = dimensions == 2 ? extent(*array, 2) : 1;
    if (rows == 0 || columns == 0 || array->pvData == nullptr) return {};
    if (dimensions == 2 && argument_.shape == Shape::Vector) {
      if (rows != 1 && columns != 1) {
        mismatch("must be a vector, not a table of " + std::to_string(rows) + " by " +
                 std::to_string(columns));
      }
      dimensions = 1;
      rows *= columns;
      columns = 1;
    } else if (argument_.shape == Shape::Table) {
      dimensions = 2;
    }
    dimensions_ = dimensions;
    rows_ = static_cast<std::size_t>(rows);
    const auto count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    const ArrayData data(array);
    inArray_ = true;
    return shaped<T>(rows, columns, dimensions,
                     [&](std::vector<T>& out) { take<T>(data, *array, type, count, out); });
  }

  /// Appends the elements of a typed array.
  template <class T>
  void take(const ArrayData& data, const SAFEARRAY& array, VARTYPE type, std::size_t count,
            std::vector<T>& out) {
    const auto elements = [&]<class Element>(const Element* from, auto intoVariant) {
      if (array.cbElements != sizeof(Element)) mismatch("is an array of another type");
      if constexpr (std::is_same_v<T, double> && std::is_same_v<Element, double>) {
        out.assign(from, from + count);
        const auto bad = std::find_if_not(out.begin(), out.end(), [](double x) { return std::isfinite(x); });
        place_ = static_cast<std::size_t>(bad - out.begin());
        if (bad != out.end()) finite(*bad);
      } else {
        out.reserve(count);
        VARIANT value;
        VariantInit(&value);
        for (place_ = 0; place_ < count; ++place_) {
          intoVariant(value, from[place_]);
          out.push_back(element<T>(value));
        }
      }
    };
    const auto number = [](VARIANT& value, auto x) {
      value.vt = VT_R8;
      value.dblVal = static_cast<double>(x);
    };
    switch (type) {
      case VT_VARIANT:
        if (array.cbElements != sizeof(VARIANT)) mismatch("is an array of another type");
        out.reserve(count);
        for (place_ = 0; place_ < count; ++place_) {
          out.push_back(element<T>(data.as<VARIANT>()[place_]));
        }
        return;
      case VT_R8:
        return elements(data.as<double>(), number);
      case VT_I1:
        return elements(data.as<signed char>(), number);
      case VT_UI1:
        return elements(data.as<unsigned char>(), number);
      case VT_I2:
        return elements(data.as<std::int16_t>(), number);
      case VT_UI2:
        return elements(data.as<std::uint16_t>(), number);
      case VT_I4:
      case VT_INT:
        return elements(data.as<std::int32_t>(), number);
      case VT_UI4:
      case VT_UINT:
        return elements(data.as<std::uint32_t>(), number);
      case VT_I8:
        return elements(data.as<std::int64_t>(), [](VARIANT& value, std::int64_t x) {
          value.vt = VT_I8;
          value.llVal = x;
        });
      case VT_UI8:
        return elements(data.as<std::uint64_t>(), [](VARIANT& value, std::uint64_t x) {
          value.vt = VT_UI8;
          value.ullVal = x;
        });
      case VT_R4:
        return elements(data.as<float>(), [](VARIANT& value, float x) {
          value.vt = VT_R4;
          value.fltVal = x;
        });
      case VT_BSTR:
        return elements(data.as<BSTR>(), [](VARIANT& value, BSTR x) {
          value.vt = VT_BSTR;
          value.bstrVal = x;
        });
      case VT_BOOL:
        return elements(data.as<VARIANT_BOOL>(), [](VARIANT& value, VARIANT_BOOL x) {
          value.vt = VT_BOOL;
          value.boolVal = x;
        });
      case VT_CY:
        return elements(data.as<CY>(), [](VARIANT& value, CY x) {
          value.vt = VT_CY;
          value.cyVal = x;
        });
      case VT_DATE:
        return elements(data.as<DATE>(), [](VARIANT& value, DATE x) {
          value.vt = VT_DATE;
          value.date = x;
        });
      case VT_DECIMAL:
        return elements(data.as<DECIMAL>(), [](VARIANT& value, const DECIMAL& x) {
          value.decVal = x;
          value.vt = VT_DECIMAL;
        });
      default:
        inArray_ = false;
        mismatch("is an array of a type that holds no values");
    }
  }

  template <class T, class Fill>
  Array<T> shaped(Index rows, Index columns, int dimensions, Fill fill) {
    std::vector<T> elements;
    fill(elements);
    if (dimensions == 1) return Array<T>(std::move(elements));
    Array<T> result(rows, columns, T());
    std::move(elements.begin(), elements.end(), result.elements().begin());
    return result;
  }

  const Argument& argument_;
  LCID locale_;

  // Where in an array the reader stands, for the texts of failures.
  bool inArray_ = false;
  int dimensions_ = 0;
  std::size_t rows_ = 1;
  std::size_t place_ = 0;
  int objects_ = 0;
};

VARTYPE typedElements(ValueType type) {
  return type == ValueType::Doubles ? VT_R8 : type == ValueType::Texts ? VT_BSTR : VT_VARIANT;
}

OwnedVariant variantOf(double value) { return OwnedVariant(value); }
OwnedVariant variantOf(std::int16_t value) { return OwnedVariant::integer(value); }
OwnedVariant variantOf(bool value) { return OwnedVariant::flag(value); }
OwnedVariant variantOf(const std::string& value) { return OwnedVariant::text(value); }
OwnedVariant variantOf(std::monostate) { return {}; }
OwnedVariant variantOf(const Variant& value) {
  if (value.isNumber()) return variantOf(value.toNumber());
  if (value.isFlag()) return variantOf(value.toFlag());
  if (value.isText()) return variantOf(value.toText());
  return {};
}
OwnedVariant variantOf(const std::shared_ptr<Sheet>& sheet) {
  const auto* held = dynamic_cast<const AutomationSheet*>(sheet.get());
  return OwnedVariant::object(held == nullptr ? nullptr : held->object());
}

/// A new array with lower bounds 1; nothing for one that was never filled.
template <class T>
OwnedVariant variantOfArray(const Array<T>& array, VARTYPE elementType) {
  if (!array.filled()) return {};
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(array.rows()), 1}, {1, 1}};
  if (array.dimensions() == 2) bounds[1].cElements = static_cast<ULONG>(array.columns());
  SAFEARRAY* made = SafeArrayCreate(elementType, static_cast<UINT>(array.dimensions()), bounds);
  if (made == nullptr) throw std::bad_alloc();
  OwnedVariant result = OwnedVariant::array(made, elementType);
  const std::span<const T> from = array.elements();
  if (elementType == VT_VARIANT) {
    auto* to = static_cast<VARIANT*>(made->pvData);
    for (const T& value : from) *to++ = variantOf(value).release();
    return result;
  }
  if constexpr (std::is_same_v<T, double>) {
    std::copy(from.begin(), from.end(), static_cast<double*>(made->pvData));
  }
  if constexpr (std::is_same_v<T, std::string>) {
    auto* to = static_cast<BSTR*>(made->pvData);
    for (const std::string& value : from) *to++ = newText(value);
  }
  return result;
}

/// The value as a variant, an array with elements of `elementType`.
OwnedVariant variantOf(const Value& value, VARTYPE elementType) {
  return std::visit(
      [&](const auto& held) {
        if constexpr (requires { held.dimensions(); }) {
          return variantOfArray(held, elementType);
        } else {
          return variantOf(held);
        }
      },
      value);
}

bool hasFixedSize(const SAFEARRAY& array) {
  return (array.fFeatures & (FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE)) != 0;
}

}  // namespace

Argument describedAs(std::string name, ValueType type, Shape shape) {
  Argument result;
  result.name = std::move(name);
  result.type = type;
  result.shape = shape;
  return result;
}

Value valueOf(const Argument& argument, const VARIANT& passed, LCID locale) {
  Reader reader(argument, locale);
  return isArray(argument.type) ? reader.array(passed) : reader.scalar(passed);
}

Value incomingValue(const Argument& argument, const VARIANT& passed, LCID locale) {
  if (isArray(argument.type)) return {};
  try {
    return valueOf(argument, passed, locale);
  } catch (const Failure&) {
    return {};
  }
}

OwnedVariant resultVariant(const Value& value) { return variantOf(value, VT_VARIANT); }

Receiver::Receiver(const Argument& argument, VARIANT& passed) : argument_(argument), target_(&passed) {
  bool byReference = false;
  for (int depth = 0; target_->vt == variantReference; ++depth) {
    if (target_->pvarVal == nullptr || depth == deepest) refuse();
    target_ = target_->pvarVal;
    byReference = true;
  }
  const VARTYPE type = target_->vt;
  if ((type & VT_BYREF) == 0) {
    if (!byReference) {
      raise(FailureNumber::TypeMismatch, argument_.name + " is a result and must be passed by reference");
    }
    if ((type & VT_ARRAY) != 0) checkReplaceable(target_->parray);
    return;
  }
  if (target_->byref == nullptr) refuse();
  if (isArray(argument_.type)) {
    const VARTYPE wanted = VT_BYREF | VT_ARRAY;
    if (type != (wanted | VT_VARIANT) && type != (wanted | typedElements(argument_.type))) refuse();
    checkReplaceable(*target_->pparray);
    return;
  }
  const VARTYPE wanted = argument_.type == ValueType::Double    ? VT_R8
                         : argument_.type == ValueType::Integer ? VT_I2
                         : argument_.type == ValueType::Flag    ? VT_BOOL
                         : argument_.type == ValueType::Text    ? VT_BSTR
                                                                : VT_VARIANT;
  if (type != (VT_BYREF | wanted)) refuse();
}

void Receiver::refuse() const {
  raise(FailureNumber::TypeMismatch, argument_.name + " is a " + inWords(argument_.type, argument_.shape) +
                                         ", which the variable passed for it cannot take");
}

void Receiver::checkReplaceable(SAFEARRAY* held) const {
  if (held != nullptr && held->cLocks > 0) {
    raise(FailureNumber::TypeMismatch, argument_.name + " is locked and cannot take a result");
  }
}

SAFEARRAY** Receiver::typedArray() const {
  const VARTYPE array = VT_BYREF | VT_ARRAY;
  return (target_->vt & array) == array ? target_->pparray : nullptr;
}

void Receiver::prepare(const Value& value) {
  SAFEARRAY** array = typedArray();
  VARTYPE elements = VT_VARIANT;
  if (array != nullptr) elements = target_->vt & VT_TYPEMASK;
  content_ = variantOf(value, elements);
  if (array == nullptr || *array == nullptr || !hasFixedSize(**array)) return;
  const SAFEARRAY& held = **array;
  const SAFEARRAY& made = *content_.parray;
  bool same = held.pvData != nullptr && held.cDims == made.cDims && held.cbElements == made.cbElements;
  for (int i = 1; same && i <= held.cDims; ++i) same = extent(held, i) == extent(made, i);
  if (!same) {
    raise(FailureNumber::OutOfRange,
          argument_.name + " has a fixed size that is not the result's; pass a dynamic array");
  }
}

void Receiver::commit() noexcept {
  if (SAFEARRAY** array = typedArray()) {
    if (*array != nullptr && hasFixedSize(**array)) {
      // Elements may be moved as bytes; the old ones are cleared with `content_`.
      std::size_t bytes = (*array)->cbElements;
      for (int i = 1; i <= (*array)->cDims; ++i) bytes *= static_cast<std::size_t>(extent(**array, i));
      auto* held = static_cast<std::byte*>((*array)->pvData);
      std::swap_ranges(held, held + bytes, static_cast<std::byte*>(content_.parray->pvData));
    } else {
      std::swap(*array, content_.parray);
      if (content_.parray == nullptr) content_.vt = VT_EMPTY;
    }
    return;
  }
  switch (target_->vt) {
    case VT_BYREF | VT_R8:
      *target_->pdblVal = content_.dblVal;
      return;
    case VT_BYREF | VT_I2:
      *target_->piVal = content_.iVal;
      return;
    case VT_BYREF | VT_BOOL:
      *target_->pboolVal = content_.boolVal;
      return;
    case VT_BYREF | VT_BSTR:
      std::swap(*target_->pbstrVal, content_.bstrVal);
      return;
    default:
      std::swap(*target_, content_.content());
  }
}

}  // namespace zelkova
