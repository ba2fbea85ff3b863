#include "ui/qt/germantexts.h"

#include <algorithm>
#include <string_view>

namespace vek {

namespace {

struct Text {
    std::string_view source;
    const char* german;
};

constexpr Text texts[] = {
    {"OK", "OK"},
    {"&OK", "&OK"},
    {"Cancel", "Abbrechen"},
    {"&Cancel", "&Abbrechen"},
    {"&Yes", "&Ja"},
    {"&No", "&Nein"},
    {"&Open", "Ö&ffnen"},
    {"&Save", "&Speichern"},
    {"&Choose", "&Auswählen"},
    {"Close", "Schließen"},
    // Edit fields
    {"&Undo", "&Rückgängig"},
    {"&Redo", "&Wiederherstellen"},
    {"Cu&t", "&Ausschneiden"},
    {"&Copy", "&Kopieren"},
    {"&Paste", "&Einfügen"},
    {"Delete", "Löschen"},
    {"Select All", "Alles markieren"},
    // File dialog
    {"Look in:", "Suchen in:"},
    {"File &name:", "Datei&name:"},
    {"Files of type:", "Dateityp:"},
    {"Back", "Zurück"},
    {"Go back", "Zurück"},
    {"Forward", "Vor"},
    {"Go forward", "Vor"},
    {"Parent Directory", "Übergeordneter Ordner"},
    {"Go to the parent directory", "Zum übergeordneten Ordner"},
    {"Create New Folder", "Neuer Ordner"},
    {"Create a New Folder", "Neuen Ordner anlegen"},
    {"List View", "Liste"},
    {"Change to list view mode", "Als Liste zeigen"},
    {"Detail View", "Einzelheiten"},
    {"Change to detail view mode", "Mit Einzelheiten zeigen"},
    {"Computer", "Computer"},
    {"Name", "Name"},
    {"Size", "Größe"},
    {"Type", "Typ"},
    {"Date Modified", "Geändert am"},
    {"Folder", "Ordner"},
    {"File Folder", "Ordner"},
    {"File", "Datei"},
    {"%1 File", "%1-Datei"},
    {"Drive", "Laufwerk"},
    {"Shortcut", "Verknüpfung"},
    {"Unknown", "Unbekannt"},
    {"Directory:", "Ordner:"},
    {"%1 bytes", "%1 Bytes"},
    {"Sidebar", "Orte"},
    {"Files", "Dateien"},
    {"&Rename", "&Umbenennen"},
    {"&Delete", "&Löschen"},
    {"Show &hidden files", "&Versteckte Dateien zeigen"},
    {"&New Folder", "&Neuer Ordner"},
    {"New Folder", "Neuer Ordner"},
    {"%1 already exists.\nDo you want to replace it?", "%1 gibt es schon.\nSoll die Datei ersetzt werden?"},
    {"%1\nFile not found.\nPlease verify the correct file name was given.",
     "%1\nDie Datei wurde nicht gefunden.\nBitte den Dateinamen prüfen."},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     "%1\nDer Ordner wurde nicht gefunden.\nBitte den Namen des Ordners prüfen."},
};

}  // namespace

QString GermanTexts::translate(const char* /*context*/, const char* sourceText,
                               const char* /*disambiguation*/, int /*count*/) const {
    const std::string_view source(sourceText);
    const auto found = std::find_if(std::begin(texts), std::end(texts),
                                    [source](const Text& text) { return text.source == source; });
    return found == std::end(texts) ? QString() : QString::fromUtf8(found->german);
}

}  // namespace vek
