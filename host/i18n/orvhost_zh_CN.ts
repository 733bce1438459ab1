<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>CameraPanel</name>
    <message>
        <source>Simulated camera</source>
        <translation>模拟摄像头</translation>
    </message>
</context>
<context>
    <name>Errors</name>
    <message>
        <source>--list-cameras shows the cameras.</source>
        <translation>用 --list-cameras 可列出摄像头。</translation>
    </message>
    <message>
        <source>Try again; if that does not help, reconnect the camera.</source>
        <translation>请重试；如果仍然失败，请重新连接摄像头。</translation>
    </message>
    <message>
        <source>Check the unit: --list-cameras shows the units.</source>
        <translation>请检查单元编号：--list-cameras 会列出各单元。</translation>
    </message>
    <message>
        <source>you do not have access to the camera</source>
        <translation>您没有访问该摄像头的权限</translation>
    </message>
    <message>
        <source>Add the user to the group &quot;video&quot; and log in again.</source>
        <translation>请将用户加入“video”组，然后重新登录。</translation>
    </message>
    <message>
        <source>access is not permitted</source>
        <translation>不允许访问</translation>
    </message>
    <message>
        <source>If this program runs in a container, give the container access to the camera.</source>
        <translation>如果本程序在容器中运行，请允许该容器访问摄像头。</translation>
    </message>
    <message>
        <source>there is no such node</source>
        <translation>该设备节点不存在</translation>
    </message>
    <message>
        <source>the camera was unplugged</source>
        <translation>摄像头已被拔出</translation>
    </message>
    <message>
        <source>this is not a video device</source>
        <translation>这不是视频设备</translation>
    </message>
    <message>
        <source>another program uses the camera</source>
        <translation>另一个程序正在使用该摄像头</translation>
    </message>
    <message>
        <source>Close that program.</source>
        <translation>请关闭该程序。</translation>
    </message>
    <message>
        <source>there is no such unit or control</source>
        <translation>该单元或控制项不存在</translation>
    </message>
    <message>
        <source>Plug it in again.</source>
        <translation>请重新插上摄像头。</translation>
    </message>
    <message>
        <source>this is not a UVC camera</source>
        <translation>这不是 UVC 摄像头</translation>
    </message>
    <message>
        <source>the camera is not ready</source>
        <translation>摄像头尚未就绪</translation>
    </message>
    <message>
        <source>the control has a different length</source>
        <translation>该控制项的长度不符</translation>
    </message>
    <message>
        <source>the camera does not accept this value</source>
        <translation>摄像头不接受此值</translation>
    </message>
    <message>
        <source>the value is out of the camera&apos;s range</source>
        <translation>该值超出了摄像头的范围</translation>
    </message>
    <message>
        <source>the camera does not have enough power</source>
        <translation>摄像头供电不足</translation>
    </message>
    <message>
        <source>the control cannot be used this way</source>
        <translation>该控制项不支持此操作</translation>
    </message>
    <message>
        <source>the camera refused the request</source>
        <translation>摄像头拒绝了请求</translation>
    </message>
    <message>
        <source>there was an error on the USB connection</source>
        <translation>USB 连接出错</translation>
    </message>
    <message>
        <source>Try another cable or port, without a hub.</source>
        <translation>请换一根线缆或一个端口，并且不要使用集线器。</translation>
    </message>
    <message>
        <source>the camera refused the request, or its answer was too short</source>
        <translation>摄像头拒绝了请求，或者应答过短</translation>
    </message>
    <message>
        <source>the camera did not answer in time</source>
        <translation>摄像头没有及时应答</translation>
    </message>
    <message>
        <source>Reconnect the camera.</source>
        <translation>请重新连接摄像头。</translation>
    </message>
    <message>
        <source>Opening %1 failed: %2</source>
        <translation>打开 %1 失败：%2</translation>
    </message>
    <message>
        <source>The camera was unplugged.</source>
        <translation>摄像头已被拔出。</translation>
    </message>
    <message>
        <source>%1 is not a capture node. --list-cameras shows the capture nodes.</source>
        <translation>%1 不是采集节点。用 --list-cameras 可列出采集节点。</translation>
    </message>
    <message>
        <source>%1 has no extension unit.</source>
        <translation>%1 没有扩展单元。</translation>
    </message>
    <message>
        <source>%1 has no extension unit with the controls 7 and 8; its units: %2. Choose one with --unit.</source>
        <translation>%1 没有带控制项 7 和 8 的扩展单元；现有单元：%2。请用 --unit 选择一个。</translation>
    </message>
    <message>
        <source>%1 has several extension units with the controls 7 and 8: %2. Choose one with --unit.</source>
        <translation>%1 有多个带控制项 7 和 8 的扩展单元：%2。请用 --unit 选择一个。</translation>
    </message>
    <message>
        <source>it has %1 bytes.</source>
        <translation>它有 %1 字节。</translation>
    </message>
    <message>
        <source>the camera does not support it.</source>
        <translation>摄像头不支持它。</translation>
    </message>
    <message>
        <source>the camera is in the wrong state</source>
        <translation>摄像头当前的状态不允许此操作</translation>
    </message>
    <message>
        <source>Connect it without a hub, or to a hub with its own power.</source>
        <translation>请不要通过集线器连接，或改用自带电源的集线器。</translation>
    </message>
    <message>
        <source>Control %1 of unit %2 cannot be set: %3</source>
        <translation>无法设置单元 %2 的控制项 %1：%3</translation>
    </message>
    <message>
        <source>Control %1 of unit %2 cannot be read: %3</source>
        <translation>无法读取单元 %2 的控制项 %1：%3</translation>
    </message>
</context>
<context>
    <name>FaultKind</name>
    <message>
        <source>Delay</source>
        <translation>延迟</translation>
    </message>
    <message>
        <source>Each transfer takes this long.
A good panel stays usable, its last choice of each setting reaches the camera, and no control jumps back.</source>
        <translation>每次传输都需要这么长时间。
良好的面板始终可以操作，每项设置的最后一次选择都会到达摄像头，且没有控件会跳回原值。</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Each transfer fails with this error.
A good panel does not change; its host shows the error and reads less often.</source>
        <translation>每次传输都以此错误失败。
良好的面板保持不变；其宿主程序会显示该错误，并减少读取次数。</translation>
    </message>
    <message>
        <source>Short block</source>
        <translation>数据块过短</translation>
    </message>
    <message>
        <source>The status block ends after this many bytes.
A good panel ignores missing settings, or takes them as 0.</source>
        <translation>状态数据块在这么多字节后结束。
良好的面板会忽略缺少的设置，或将其视为 0。</translation>
    </message>
    <message>
        <source>No answer</source>
        <translation>无应答</translation>
    </message>
    <message>
        <source>The camera answers neither reads nor commands.
At the start a good panel shows only its title row; later it does not change and stays usable.</source>
        <translation>摄像头对读取和命令都不应答。
启动时，良好的面板只显示标题行；之后它保持不变，并且可以操作。</translation>
    </message>
    <message>
        <source>Random</source>
        <translation>随机</translation>
    </message>
    <message>
        <source>Each status block contains random bytes.
A good panel ignores unknown values, follows the others, and sends nothing back.</source>
        <translation>每个状态数据块都包含随机字节。
良好的面板会忽略未知的值，跟随其他的值，并且不向摄像头发送任何内容。</translation>
    </message>
    <message>
        <source>Refuse writes</source>
        <translation>拒绝写入</translation>
    </message>
    <message>
        <source>The camera reports its status and refuses every command.
A good panel follows the status and does not repeat the commands.</source>
        <translation>摄像头会报告状态，但拒绝所有命令。
良好的面板会跟随该状态，并且不重复发送命令。</translation>
    </message>
    <message>
        <source>Unplugged</source>
        <translation>拔出</translation>
    </message>
    <message>
        <source>The camera is disconnected until you clear this.
A good panel does not change. When the camera is back, the panel follows it and sends nothing by itself.</source>
        <translation>在您清除此项之前，摄像头处于断开状态。
良好的面板保持不变。摄像头恢复后，面板会跟随它，并且不会自行发送任何内容。</translation>
    </message>
    <message>
        <source>Changes itself</source>
        <translation>自行变化</translation>
    </message>
    <message>
        <source>The camera changes a setting now and then, as if by its remote control.
A good panel follows and sends nothing back.</source>
        <translation>摄像头会不时更改一项设置，就像有人使用遥控器一样。
良好的面板会跟随变化，并且不向摄像头发送任何内容。</translation>
    </message>
</context>
<context>
    <name>HostWindow</name>
    <message>
        <source>Reset to defaults</source>
        <translation>恢复默认设置</translation>
    </message>
    <message>
        <source>Camera control</source>
        <translation>摄像头控制</translation>
    </message>
    <message>
        <source>Read again</source>
        <translation>重新读取</translation>
    </message>
    <message>
        <source>Show the camera&apos;s settings in a new panel</source>
        <translation>在新面板中显示摄像头的设置</translation>
    </message>
</context>
<context>
    <name>Session</name>
    <message>
        <source>Opening %1</source>
        <translation>正在打开 %1</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>正在读取 %1</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>Read-only: no commands are sent.</source>
        <translation>只读：不发送命令。</translation>
    </message>
    <message>
        <source>Opening %1.</source>
        <translation>正在打开 %1。</translation>
    </message>
    <message>
        <source>The camera is disconnected. Changes that you make now will not be sent.</source>
        <translation>摄像头已断开。您现在所做的更改不会发送。</translation>
    </message>
    <message>
        <source>The camera is plugged in again but cannot be used.</source>
        <translation>摄像头已重新插上，但无法使用。</translation>
    </message>
    <message>
        <source>The camera is connected.</source>
        <translation>摄像头已连接。</translation>
    </message>
    <message>
        <source>The camera is failing.</source>
        <translation>摄像头出现故障。</translation>
    </message>
    <message>
        <source>Reading control 8 failed: %1</source>
        <translation>读取控制项 8 失败：%1</translation>
    </message>
    <message>
        <source>1 command waiting</source>
        <translation>1 条命令正在等待</translation>
    </message>
    <message>
        <source>%1 commands waiting</source>
        <translation>%1 条命令正在等待</translation>
    </message>
    <message>
        <source>%1.</source>
        <translation>%1。</translation>
    </message>
    <message>
        <source>%1, transfer running for %2 s.</source>
        <translation>%1，当前传输已持续 %2 秒。</translation>
    </message>
    <message>
        <source>%1: %2 was not accepted: %3</source>
        <translation>%1：%2 未被接受：%3</translation>
    </message>
</context>
<context>
    <name>TracePanel</name>
    <message>
        <source>Transfers</source>
        <translation>传输记录</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>筛选</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Copy the selected rows. Without a selection, copy all rows that are shown</source>
        <translation>复制选中的行。如果没有选中任何行，则复制显示的所有行</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存...</translation>
    </message>
    <message>
        <source>Save the rows that are shown, one JSON object per line</source>
        <translation>保存显示的行，每行一个 JSON 对象</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>毫秒</translation>
    </message>
    <message>
        <source>Request</source>
        <translation>请求</translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation>含义</translation>
    </message>
    <message>
        <source>Times</source>
        <translation>次数</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>First bytes</source>
        <translation>前几个字节</translation>
    </message>
    <message>
        <source>No row contains &quot;%1&quot;</source>
        <translation>没有包含“%1”的行</translation>
    </message>
    <message>
        <source>Save the rows that are shown</source>
        <translation>保存显示的行</translation>
    </message>
    <message>
        <source>Camera control</source>
        <translation>摄像头控制</translation>
    </message>
    <message>
        <source>Cannot write &quot;%1&quot;: %2.</source>
        <translation>无法写入“%1”：%2。</translation>
    </message>
</context>
<context>
    <name>Transfer</name>
    <message>
        <source>Tracking;Type;Mode;Composition;tracking;type;mode;composition;off;on;Basic;Hand;Board;Standard;Sport;Half Body;Full Body;Bodies</source>
        <translation>跟踪;类型;模式;构图;跟踪;类型;模式;构图;关;开;常规;手部;白板;标准;运动;半身;全身;多人</translation>
    </message>
    <message>
        <source>get;set;event;Setting;Camera;Extension</source>
        <translation>读取;设置;事件;设置项;摄像头;扩展单元</translation>
    </message>
    <message>
        <source>ok;superseded;not sent;disconnected;back;cannot be used;new panel;no answer</source>
        <translation>成功;已被取代;未发送;已断开;已恢复;无法使用;新面板;无应答</translation>
    </message>
    <message>
        <source>notice from;no widget;no such setting;language;true;false</source>
        <translation>通知来自;无控件;没有此设置;语言;是;否</translation>
    </message>
    <message>
        <source>refused;wrong control;the header is not;a value of;unknown command;unknown;bytes instead of;instead of;no such request with the record;only;bytes</source>
        <translation>被拒绝;控制项错误;数据头不是;数值长度;未知命令;未知;字节，而不是;而不是;没有使用此记录的请求;只有;字节</translation>
    </message>
    <message>
        <source>Cannot write the trace;no program reads it;its reader has gone;its reader is too slow</source>
        <translation>无法写入跟踪记录;没有程序读取它;读取程序已退出;读取程序太慢</translation>
    </message>
</context>
</TS>
