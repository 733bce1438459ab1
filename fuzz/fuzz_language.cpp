#include "hostedpanel.h"

/// An answer to the panel's question for the host's language, in any type.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    needApplication(Warnings::AreFindings);
    Input input(bytes, size);
    const QVariant language = anyAnswer(input);
    HostedPanel hosted;
    int questions = 0;
    hosted.panel->commandChannel = [&](int request, const QVariant &record) -> QVariant {
        if (request != ChannelRequest::Setting)
            return {};
        ++questions;
        const auto query = record.value<SettingData>();
        REQUIRE(query.name == "language" && query.value == QVariant(0));
        return language;
    };
    hosted.panel->insertWidget(hosted.container);
    REQUIRE(questions == 1);
    const bool english = language.toInt() == 1;
    REQUIRE(hosted.ui()->label_title->text() == (english ? "AI Tracking" : "AI跟踪"));
    REQUIRE(hosted.ui()->rb_sport->text() == (english ? "Sport" : "运动"));
    return 0;
}
