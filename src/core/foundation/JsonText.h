#pragma once

#include <QStringList>
#include <QStringView>

#include <string>

namespace tagmoor {

// Appends `text` as a JSON string, quotes included, byte for byte as QJsonDocument writes it:
// UTF-8; \" \\ \b \f \n \r \t; every other control character and every unpaired surrogate as
// \u and four lower-case hex digits. Lets a writer build JSON straight into its output.
void appendJsonString(std::string& out, QStringView text);

// Appends `texts` as a JSON array of such strings, as QJsonDocument writes it compact.
void appendJsonStrings(std::string& out, const QStringList& texts);

} // namespace tagmoor
