#include "GSTime.hpp"

#include <ctime>

GSTime TIGetTime() {
    return static_cast<GSTime>(std::time(nullptr));
}

GS::UniString TIGetISO8601TimeString(GSTime time, bool utcTime) {
    const auto seconds = static_cast<std::time_t>(time);
    std::tm fields = {};
    utcTime ? gmtime_r(&seconds, &fields) : localtime_r(&seconds, &fields);

    char text[64];
    std::strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%S", &fields);
    if (utcTime) return GS::UniString(text) + "Z";

    const long minutes = fields.tm_gmtoff / 60;
    const long distance = minutes < 0 ? -minutes : minutes;
    return GS::UniString::Printf("%s%c%02d:%02d", text, minutes < 0 ? '-' : '+', distance / 60,
                                 distance % 60);
}
