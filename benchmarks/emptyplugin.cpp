#include "orvpluginapi.h"

/// The least that a host can load: the interface's own defaults.
class EmptyPlugin : public QWidget, public OrvPluginApi
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.talsen.OrvPluginApi")
    Q_INTERFACES(OrvPluginApi)
};

#include "emptyplugin.moc"
