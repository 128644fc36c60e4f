#include "plotwerk/window/versions.h"

#include "plotwerk/journal/journal.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/columnValues.h"

#include <cstring>
#include <map>
#include <utility>

namespace plotwerk {

static constexpr std::size_t mostVersions = 200;

// Bit for bit: NaN is NaN, and 0 isn't -0.
static bool isSame(const std::vector<double> &a, const std::vector<double> &b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

static Document skeletonOf(Document &document) {
    const ValuesAside aside(document);
    return document;
}

Versions::Versions(Document &document)
    : revision(document.revision), savedRevision(document.savedRevision) {
    versions.push_back(keptFrom(document, Change::ofData));
}

// A million values are compared in milliseconds: only where they may differ.
Versions::Kept Versions::keptFrom(Document &document, Change change) const {
    Kept kept;
    kept.version.document = skeletonOf(document);
    kept.version.isSaved = !hasUnsavedChanges(document);
    const std::vector<Values> none;
    const std::vector<Values> &before = versions.empty() ? none : versions[present].values;
    const auto stays = [&](std::size_t place, const std::vector<double> &values) {
        if (place >= before.size() || before[place]->size() != values.size()) return false;
        return change != Change::ofData || isSame(*before[place], values);
    };
    forColumns(document, [&](const Column &column) {
        const std::size_t place = kept.values.size();
        if (stays(place, column.values)) {
            kept.values.push_back(before[place]);
            return;
        }
        for (const Values &values : before) { // columns have come or gone before it
            if (!isSame(*values, column.values)) continue;
            kept.values.push_back(values);
            return;
        }
        kept.values.push_back(std::make_shared<const std::vector<double>>(column.values));
    });
    return kept;
}

// What was saved before isn't what the file holds any more.
void Versions::noteSave(const Document &document) {
    if (document.savedRevision == savedRevision) return;
    savedRevision = document.savedRevision;
    for (Kept &kept : versions) kept.version.isSaved = false;
}

void Versions::keep(Document &document, Change change, std::size_t lines) {
    noteSave(document);
    if (document.revision == revision) {
        versions[present].version.isSaved = !hasUnsavedChanges(document);
        return;
    }
    Kept kept = keptFrom(document, change);
    kept.version.lines = lines;
    kept.change = change;
    Kept &last = versions[present];
    const bool sameStep = change == Change::ofView ||
                          (change == Change::ofSetting && last.change == Change::ofSetting);
    if (change != Change::ofView) versions.resize(present + 1);
    if (sameStep) {
        kept.change = last.change;
        last = std::move(kept);
        revision = document.revision;
        return;
    }
    versions.push_back(std::move(kept));
    revision = document.revision;
    if (versions.size() > mostVersions) versions.erase(versions.begin());
    present = versions.size() - 1;
}

// First what may fail: the document is whole until then.
Versions::Version Versions::restored(const Kept &kept, Document &document) const {
    struct Place {
        std::vector<double> *values;
        std::int32_t index;
    };
    std::map<const std::vector<double> *, Place> staying;
    const std::vector<Values> &own = versions[present].values;
    std::int32_t index = 0;
    forColumns(document, [&](Column &column) {
        staying.emplace(own[static_cast<std::size_t>(index)].get(), Place{&column.values, index});
        ++index;
    });

    Version version = kept.version;
    std::vector<std::pair<std::vector<double> *, std::vector<double> *>> moves;
    auto values = kept.values.begin();
    forColumns(version.document, [&](Column &column) {
        const auto stays = staying.extract(values->get());
        if (stays)
            moves.emplace_back(&column.values, stays.mapped().values);
        else
            column.values = **values;
        version.origins.push_back(stays ? stays.mapped().index : -1);
        ++values;
    });
    Journal::setRoomAside(); // for what the document becomes
    for (const auto &[to, from] : moves) to->swap(*from);
    return version;
}

Versions::Version Versions::undo(Document &document) {
    Version version = restored(versions[present - 1], document);
    --present;
    return version;
}

Versions::Version Versions::redo(Document &document) {
    Version version = restored(versions[present + 1], document);
    ++present;
    return version;
}

} // namespace plotwerk
