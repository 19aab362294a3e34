#include "kdxcommon/inhouse/jxutils/jx_exception.h"

namespace kdx {

JxException::JxException(const string& text, const string& where) : std::runtime_error(text), where_(where) {}

JxException::~JxException() = default;

}  // namespace kdx
