#include "DGAlert.hpp"

#include "HostKit/API/Session.hpp"

namespace DG {

short InformationAlert(const GS::UniString& largeText, const GS::UniString& smallText,
                       const GS::UniString& button1, const GS::UniString& button2,
                       const GS::UniString& button3) {
    const hostkit::SessionAccess session;
    if (!session) return 0;
    return session->GetDriver().Alert({largeText, smallText, {button1, button2, button3}});
}

}  // namespace DG
