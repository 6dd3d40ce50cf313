#include "transfer/ServiceHeaders.hpp"

#include "Config.hpp"

GS::UniString MakeClientHeader() {
    return GS::UniString("Kestrane-Client-Id: ") + clientName;
}

GS::UniString MakeTokenHeader(const GS::UniString& token) {
    return GS::UniString("X-Project-Authorization: bearer ") + token;
}
