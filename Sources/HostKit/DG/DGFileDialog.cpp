#include "DGFileDialog.hpp"

#include "HostKit/API/Session.hpp"

namespace DG {

UIndex FileDialog::AddFilter(FTM::TypeID type) {
    if (const FTM::FileType* known = hostkit::FindFileType(type))
        filters.push_back({known->GetDescription(), known->GetExtension()});
    else
        filters.emplace_back();
    return static_cast<UIndex>(filters.size() - 1);
}

void FileDialog::SetFilterText(UIndex filter, const GS::UniString& text) {
    if (filter < filters.size()) filters[filter].text = text;
}

bool FileDialog::Invoke() {
    hostkit::dg::FileQuestion question{title, {}};
    for (const Filter& filter : filters)
        question.filters.push_back({filter.text, filter.extension});
    const hostkit::SessionAccess session;
    if (!session) return false;
    const auto answer = session->GetDriver().AskForFile(question);
    if (!answer) return false;
    selected = hostkit::ToLocation(*answer);
    return true;
}

}  // namespace DG
