#include <string>

#include "Workbench/exchange/Exchange.hpp"

namespace workbench {
namespace {

struct Sentence {
    const char* english;
    const char* german;
    const char* In(Language language) const { return language == Language::german ? german : english; }
};

/// {file}, {line}, {byte}, {detail} and {id} stand for what is known of the case.
constexpr Sentence cannotRead = {
    "The file \"{file}\" cannot be read: {detail}. Check that it exists and that you may open it.",
    "Die Datei „{file}“ kann nicht gelesen werden: {detail}. Prüfen Sie, ob sie vorhanden ist und Sie sie öffnen dürfen."};
constexpr Sentence emptyFile = {
    "The file \"{file}\" is empty (0 bytes). Export or copy it again.",
    "Die Datei „{file}“ ist leer (0 Byte). Exportieren oder kopieren Sie sie neu."};
constexpr Sentence notStep = {
    "The file \"{file}\" is not an IFC file: line {line} (byte {byte}) is not what an IFC file has there. Choose an .ifc or .ifczip file.",
    "Die Datei „{file}“ ist keine IFC-Datei: Zeile {line} (Byte {byte}) entspricht nicht dem IFC-Format. Wählen Sie eine .ifc- oder .ifczip-Datei."};
constexpr Sentence otherSchema = {
    "The file \"{file}\" is not an IFC file: its header (line 1) names the schema \"{detail}\". Choose an .ifc or .ifczip file.",
    "Die Datei „{file}“ ist keine IFC-Datei: Ihr Kopf (ab Zeile 1) nennt das Schema „{detail}“. Wählen Sie eine .ifc- oder .ifczip-Datei."};
constexpr Sentence ifcXml = {
    "The file \"{file}\" holds IFC as XML, which cannot be opened here. Export it as .ifc (STEP) instead.",
    "Die Datei „{file}“ enthält IFC als XML, das hier nicht geöffnet werden kann. Exportieren Sie das Modell als .ifc (STEP)."};
constexpr Sentence cutOff = {
    "The file \"{file}\" is cut off: its data does not end; what is complete ends before line {line} (byte {byte}). Export or copy it again.",
    "Die Datei „{file}“ ist abgeschnitten: Ihre Daten haben kein Ende; Vollständiges endet vor Zeile {line} (Byte {byte}). Exportieren oder kopieren Sie sie neu."};
constexpr Sentence damagedArchive = {
    "The archive \"{file}\" is damaged or holds no .ifc file. Pack or copy it again.",
    "Das Archiv „{file}“ ist beschädigt oder enthält keine .ifc-Datei. Packen oder kopieren Sie es neu."};

constexpr Sentence saved = {"The file \"{file}\" was written.", "Die Datei „{file}“ wurde geschrieben."};
constexpr Sentence stopped = {"Writing the file \"{file}\" was stopped. Nothing was changed.",
                              "Das Schreiben der Datei „{file}“ wurde abgebrochen. Nichts wurde verändert."};
constexpr Sentence refused = {
    "The file \"{file}\" is not written: it would replace a damaged source, or its name asks for another format. Save under another name that ends with .ifc.",
    "Die Datei „{file}“ wird nicht geschrieben: Sie würde eine beschädigte Quelle ersetzen, oder ihr Name verlangt ein anderes Format. Sichern Sie unter einem anderen Namen mit der Endung .ifc."};
constexpr Sentence cannotWrite = {
    "The file \"{file}\" cannot be written: {detail}. Choose a folder that you may write to.",
    "Die Datei „{file}“ kann nicht geschrieben werden: {detail}. Wählen Sie einen Ordner, in den Sie schreiben dürfen."};
constexpr Sentence diskFull = {
    "The file \"{file}\" cannot be written: the disk is full ({detail}). Free some space or choose another disk; the old file is unchanged.",
    "Die Datei „{file}“ kann nicht geschrieben werden: Der Datenträger ist voll ({detail}). Schaffen Sie Platz oder wählen Sie einen anderen; die alte Datei ist unverändert."};

constexpr Sentence damagedRecord = {
    "Line {line} (byte {byte}): record #{id} is damaged and was skipped.",
    "Zeile {line} (Byte {byte}): Der Datensatz #{id} ist beschädigt und wurde übergangen."};
constexpr Sentence damagedText = {"Line {line} (byte {byte}): this is no record; it was skipped.",
                                  "Zeile {line} (Byte {byte}): Das ist kein Datensatz; er wurde übergangen."};
constexpr Sentence duplicateId = {
    "Line {line} (byte {byte}): record #{id} exists already; this later one is used.",
    "Zeile {line} (Byte {byte}): Der Datensatz #{id} ist schon vorhanden; dieser spätere gilt."};
constexpr Sentence missingEndsec = {"Line {line} (byte {byte}): the end of the data (ENDSEC) is missing.",
                                    "Zeile {line} (Byte {byte}): Das Ende der Daten (ENDSEC) fehlt."};
constexpr Sentence unusable = {"Line {line} (byte {byte}): this is no usable IFC.",
                               "Zeile {line} (Byte {byte}): Das ist kein brauchbares IFC."};

void Replace(std::string& text, const std::string& placeholder, const std::string& value) {
    if (const size_t at = text.find(placeholder); at != std::string::npos) {
        text.replace(at, placeholder.size(), value);
    }
}

std::string At(const Sentence& sentence, Language language, uint64_t line, uint64_t byte) {
    std::string text = sentence.In(language);
    Replace(text, "{line}", std::to_string(line));
    Replace(text, "{byte}", std::to_string(byte));
    return text;
}

const Sentence& SentenceOf(const Refusal& refusal) {
    switch (refusal.reason) {
        case RefusalReason::cannotRead:
            return cannotRead;
        case RefusalReason::empty:
            return emptyFile;
        case RefusalReason::notIfc:
            return refusal.line > 0 ? notStep : otherSchema;
        case RefusalReason::ifcXml:
            return ifcXml;
        case RefusalReason::cutOff:
            return cutOff;
        case RefusalReason::damagedArchive:
            return damagedArchive;
    }
    return notStep;
}

const Sentence& SentenceOf(SaveOutcome outcome) {
    switch (outcome) {
        case SaveOutcome::done:
            return saved;
        case SaveOutcome::stopped:
            return stopped;
        case SaveOutcome::refused:
            return refused;
        case SaveOutcome::cannotWrite:
            return cannotWrite;
        case SaveOutcome::diskFull:
            return diskFull;
    }
    return cannotWrite;
}

const Sentence& SentenceOf(const step::Problem& problem) {
    switch (problem.kind) {
        case step::ProblemKind::damagedRecord:
            return problem.id ? damagedRecord : damagedText;
        case step::ProblemKind::duplicateId:
            return duplicateId;
        case step::ProblemKind::missingEndsec:
            return missingEndsec;
        default:
            return unusable;
    }
}

}  // namespace

std::string Describe(const Refusal& refusal, Language language) {
    std::string text = At(SentenceOf(refusal), language, refusal.line, refusal.byte);
    Replace(text, "{detail}", refusal.detail);
    Replace(text, "{file}", refusal.file.string());
    return text;
}

std::string Describe(const SaveResult& result, Language language) {
    std::string text = SentenceOf(result.outcome).In(language);
    Replace(text, "{detail}", result.detail);
    Replace(text, "{file}", result.file.string());
    return text;
}

std::string Describe(const step::Problem& problem, Language language) {
    std::string text = At(SentenceOf(problem), language, problem.line, problem.byte);
    Replace(text, "{id}", std::to_string(problem.id));
    return text;
}

}  // namespace workbench
