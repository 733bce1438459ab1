#include "hostedpanel.h"

#include <array>

namespace {

using namespace std::chrono_literals;

/// What a panel shows: its controls, by the values of their commands, and which rows are there.
enum Part { On, Composed, Type, Mode, Picture, Body, CompositionTitle, CompositionRow, PartCount };
using Shown = std::array<int, PartCount>;

Shown shownBy(const Ui_root &ui)
{
    return {ui.sw_title->GetStatus(),
            ui.sw_picture_mode->GetStatus(),
            ui.rb_hand->isChecked() + 2 * ui.rb_whiteboard->isChecked(),
            1 + ui.rb_sport->isChecked(),
            ui.wg_half_body->isChecked() + 2 * ui.wg_full_body->isChecked() +
                3 * ui.wg_multi_body->isChecked(),
            !ui.frame_spliter->isHidden(),
            !ui.frame_picture_title->isHidden(),
            !ui.frame_picture_mode->isHidden()};
}

} // namespace

/// A sequence of answers to the panel's first read, to its retry and to its polls.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    needApplication(Warnings::AreFindings);
    now += 1000s - now % 1000s; // what coarse timers make of their intervals depends on it
    Input input(bytes, size);
    HostedPanel hosted;
    ExtensionUnit answer; // as the panel has to read it
    int reads = 0;
    QByteArray sent; // ids and values
    hosted.panel->commandChannel = [&](int request, const QVariant &record) -> QVariant {
        if (request == ChannelRequest::Setting)
            return 1;
        REQUIRE(request == ChannelRequest::Extension);
        const auto unit = record.value<ExtensionUnit>();
        if (unit.write) {
            sent.append(char(unit.data[3])).append(char(unit.data[5]));
            return {};
        }
        ++reads;
        const QVariant given = anyAnswer(input);
        const bool sound = given.userType() == qMetaTypeId<ExtensionUnit>();
        answer = sound ? given.value<ExtensionUnit>() : ExtensionUnit();
        return given;
    };

    Shown due = {0, 0, 0, 1, 0, 1, 1, 1}; // a form to which nothing was done
    const auto settle = [&](int dueReads, const QByteArray &dueSent) {
        advance(200ms);
        REQUIRE(reads == dueReads);
        REQUIRE(sent == dueSent);
        sent.clear();
        const Ui_root &ui = *hosted.ui();
        REQUIRE(shownBy(ui) == due);
        REQUIRE(!ui.sw_title->isSliding() && !ui.sw_picture_mode->isSliding());
        REQUIRE(ui.frame_limit_title->isHidden() && ui.frame_limit_setting_spliter->isHidden());
        REQUIRE(hosted.window.updatesEnabled());
    };
    const auto setUp = [&](int read) {
        QByteArray dueSent;
        const int tracking = answer.data[1], type = answer.data[2];
        const int mode = answer.data[3], picture = answer.data[4];
        if (answer.length != 0) {
            if (picture <= 3)
                due[Composed] = picture != 0;
            if (picture >= 1 && picture <= 3) {
                due[Picture] = picture;
                dueSent = QByteArray("\x13").append(char(picture));
            }
            due[On] = due[Body] = tracking != 0;
            due[Type] = type <= 2 ? type : 0;
            due[Mode] = mode == 2 ? 2 : 1;
            due[CompositionTitle] = tracking != 0 && type == 0;
            due[CompositionRow] = due[CompositionTitle] && picture != 0;
        } else if (read == 2) {
            due[Body] = due[CompositionTitle] = due[CompositionRow] = false;
        }
        settle(read, dueSent);
    };

    const auto order = input.take();
    hosted.window.setVisible(order & 1);
    hosted.panel->insertWidget(hosted.container);
    hosted.window.setVisible(order & 2);
    setUp(1);
    if (answer.length == 0) {
        advance(1000ms);
        setUp(2);
    }
    auto latest = now + 4200ms;
    for (int polls = reads + 1; !input.left.isEmpty(); ++polls, latest = now + 1100ms) {
        while (reads < polls && now < latest)
            advance(50ms);
        if (answer.length >= 3) {
            const int tracking = answer.data[1], type = answer.data[2];
            if (tracking != due[On])
                due[On] = due[Body] = tracking != 0;
            if (type <= 2)
                due[Type] = type;
            due[CompositionTitle] = tracking != 0 && type == 0;
            due[CompositionRow] = due[CompositionTitle] && due[Composed];
        }
        settle(polls, {});
    }
    return 0;
}
