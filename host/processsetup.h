#pragma once

class QObject;

/// What a well-behaved process sets up before and after it creates its application.
namespace ProcessSetup {

/// Opens closed standard streams on /dev/null. Otherwise a file or the connection to the display
/// would take their place and receive their output. Call first.
void openStandardStreams();

/// Uses Qt's platform "offscreen" if there is no display. Call before creating the application.
void doWithoutDisplay();

/// Makes SIGINT, SIGTERM and SIGHUP end the event loop with `status`. A second one kills the
/// process. `context` owns what that needs.
void exitOnSignals(QObject &context, int status);

} // namespace ProcessSetup
