#include "API_Guid.hpp"

static_assert(sizeof(API_Guid) == 16 && sizeof(GS::Guid) == sizeof(API_Guid));

API_Guid GSGuid2APIGuid(const GS::Guid& guid) {
    API_Guid result;
    std::memcpy(&result, &guid, sizeof(result));
    return result;
}

GS::Guid APIGuid2GSGuid(const API_Guid& guid) {
    GS::Guid result;
    std::memcpy(static_cast<void*>(&result), &guid, sizeof(result));
    return result;
}

GS::UniString APIGuidToString(const API_Guid& guid) {
    return APIGuid2GSGuid(guid).ToUniString();
}

API_Guid APIGuidFromString(const char* text) {
    return GSGuid2APIGuid(GS::Guid(GS::UniString(text)));
}
