// The identity of a pass in its JSON form.
#pragma once

#include "inspect/results/json.h"

#include <KxInspect/PassIdentity.h>

namespace KxInspect::detail {

/// {"name": kPassSchema, "version": kPassSchemaVersion}
QJsonObject schemaObject();

/// @{ A file by name, size and hash; null for nothing.
QJsonValue fileValue(const std::optional<InputFile>& file);
std::optional<InputFile> readFile(const JsonValue& value);
/// @}

QJsonObject identityObject(const PassIdentity& identity);

/// Reads what schemaObject() and identityObject() wrote, from the document. Throws an Error for another schema.
PassIdentity readIdentity(const JsonValue& document);

} // namespace KxInspect::detail
