<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Advice</name>
    <message>
        <source>It can be used here as soon as that program has let go of it.</source>
        <translation>该程序释放之后即可在此使用。</translation>
    </message>
    <message>
        <source>Close windows and programs that are not needed, or start this one again.</source>
        <translation>请关闭不需要的窗口和程序，或重新启动本程序。</translation>
    </message>
    <message>
        <source>Install the udev rule %1 and plug the frame in again. Without a session at the screen, join the group %2 too.</source>
        <translation>请安装 udev 规则 %1，然后重新插入触摸框。若没有屏幕前的会话，还需加入 %2 组。</translation>
    </message>
    <message>
        <source>The udev rule %1 is there, but this system has no group %2. Make it with &quot;groupadd --system %2&quot;, join it and plug the frame in again.</source>
        <translation>udev 规则 %1 已存在，但此系统没有 %2 组。请用“groupadd --system %2”创建并加入该组，然后重新插入触摸框。</translation>
    </message>
    <message>
        <source>The udev rule %1 is there, but the node does not have its rights yet. Plug the frame in again.</source>
        <translation>udev 规则 %1 已存在，但设备节点尚未获得相应权限。请重新插入触摸框。</translation>
    </message>
    <message>
        <source>This user is in the group %1, but joined it after this session began. Log in again.</source>
        <translation>此用户属于 %1 组，但是在本次会话开始之后才加入的。请重新登录。</translation>
    </message>
    <message>
        <source>Join the group %1, then log in again.</source>
        <translation>请加入 %1 组，然后重新登录。</translation>
    </message>
    <message>
        <source>A touch frame is at %1 but this user may not open it (%2).</source>
        <translation>%1 处有触摸框，但此用户无权打开（%2）。</translation>
    </message>
    <message>
        <source>%1, perhaps a touch frame, cannot be opened (%2).</source>
        <translation>无法打开 %1（可能是触摸框）：%2。</translation>
    </message>
    <message>
        <source>A touch frame is at %1 but it cannot be opened (%2).</source>
        <translation>%1 处有触摸框，但无法打开（%2）。</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again.</source>
        <translation>请拔下后重新插入。</translation>
    </message>
    <message>
        <source>The serial port %1 cannot be opened (%2).</source>
        <translation>无法打开串口 %1（%2）。</translation>
    </message>
    <message>
        <source>A touch frame is there but cannot be read: this system has no room for another thread.</source>
        <translation>触摸框已连接，但无法读取：系统没有余量再启动一个线程。</translation>
    </message>
    <message>
        <source>End programs that are not needed. The frame is used as soon as there is room.</source>
        <translation>请结束不需要的程序。一有余量，触摸框即可使用。</translation>
    </message>
    <message>
        <source>A program that has ended left the file %1 behind, which keeps the serial port %2 closed.</source>
        <translation>已结束的程序遗留了文件 %1，使串口 %2 无法打开。</translation>
    </message>
    <message>
        <source>Remove that file, as its owner %1 or as root.</source>
        <translation>请以其所有者 %1 或 root 的身份删除该文件。</translation>
    </message>
    <message>
        <source>This user may not open the serial port %1: it is for its owner %2 alone.</source>
        <translation>此用户无权打开串口 %1：仅其所有者 %2 可用。</translation>
    </message>
    <message>
        <source>Ask who looks after this machine for access.</source>
        <translation>请向管理这台计算机的人申请权限。</translation>
    </message>
    <message>
        <source>This user may not open the serial port %1.</source>
        <translation>此用户无权打开串口 %1。</translation>
    </message>
    <message>
        <source>There is no serial port %1.</source>
        <translation>没有串口 %1。</translation>
    </message>
    <message>
        <source>Check the cable and the name, such as ttyUSB0.</source>
        <translation>请检查电缆和名称，例如 ttyUSB0。</translation>
    </message>
    <message>
        <source>The touch frame at %1 is in use by another program.</source>
        <translation>%1 处的触摸框正被另一个程序使用。</translation>
    </message>
    <message>
        <source>The touch frame at %1 is in use by process %2.</source>
        <translation>%1 处的触摸框正被进程 %2 使用。</translation>
    </message>
    <message>
        <source>The touch frame at %1 is in use by %2 (process %3).</source>
        <translation>%1 处的触摸框正被 %2（进程 %3）使用。</translation>
    </message>
    <message>
        <source>Another program has %1 open without saying that it uses the frame.</source>
        <translation>另一个程序打开了 %1，但没有声明在使用触摸框。</translation>
    </message>
    <message>
        <source>Process %2 has %1 open without saying that it uses the frame.</source>
        <translation>进程 %2 打开了 %1，但没有声明在使用触摸框。</translation>
    </message>
    <message>
        <source>%2 (process %3) has %1 open without saying that it uses the frame.</source>
        <translation>%2（进程 %3）打开了 %1，但没有声明在使用触摸框。</translation>
    </message>
    <message>
        <source>End that program if answers get lost.</source>
        <translation>如果应答丢失，请结束该程序。</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by another program.</source>
        <translation>串口 %1 正被另一个程序使用。</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by process %2.</source>
        <translation>串口 %1 正被进程 %2 使用。</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by %2 (process %3).</source>
        <translation>串口 %1 正被 %2（进程 %3）使用。</translation>
    </message>
    <message>
        <source>This user may not open the serial port %1: it belongs to root alone.</source>
        <translation>此用户无权打开串口 %1：仅 root 可用。</translation>
    </message>
    <message>
        <source>The device manager (udev) has usually not set up such a port. Plug its adapter in again, run &quot;sudo udevadm trigger&quot; or restart this machine.</source>
        <translation>这通常是因为设备管理器（udev）尚未设置此类串口。请重新插入适配器、运行“sudo udevadm trigger”或重启这台计算机。</translation>
    </message>
</context>
<context>
    <name>CalEnd_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Do you want to save the Calibration results ?</source>
        <translation>是否保存校准结果？</translation>
    </message>
    <message>
        <source>Saves the calibration</source>
        <translation>保存校准结果</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>Discards the calibration</source>
        <translation>放弃校准结果</translation>
    </message>
    <message>
        <source>No = 10</source>
        <translation>否 = 10</translation>
    </message>
    <message>
        <source>Calibration error is too large.We recommend calibrate it again.</source>
        <translation>校准误差过大，建议重新校准。</translation>
    </message>
    <message>
        <source>Calibration accuracy: %1%.</source>
        <translation>校准精度：%1%。</translation>
    </message>
    <message>
        <source>Calibration error is too large.We recommend calibrate it again. The touches were %1% off.</source>
        <translation>校准误差过大，建议重新校准。触摸点偏差 %1%。</translation>
    </message>
    <message>
        <source>No = %1</source>
        <translation>否 = %1</translation>
    </message>
</context>
<context>
    <name>CalibrationCheck_dlg</name>
    <message>
        <source>Calibration check</source>
        <translation>校准检查</translation>
    </message>
    <message>
        <source>Touch the crosses one after the other. ESC leaves.</source>
        <translation>请依次触摸各个十字。按 ESC 退出。</translation>
    </message>
    <message>
        <source>ESC leaves, Backspace takes the last touch back.</source>
        <translation>按 ESC 退出，按退格键撤销上一次触摸。</translation>
    </message>
    <message>
        <source>Check &amp;again</source>
        <translation>重新检查(&amp;A)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Touch the middle of cross %L1 of %L2.</source>
        <translation>请触摸第 %L1 个十字的中心，共 %L2 个。</translation>
    </message>
    <message>
        <source>Passed</source>
        <translation>通过</translation>
    </message>
    <message>
        <source>Calibrate again</source>
        <translation>请重新校准</translation>
    </message>
    <message>
        <source>Cross %L1: %2 px off, which is %3 mm.</source>
        <translation>十字 %L1：偏差 %2 像素，即 %3 毫米。</translation>
    </message>
    <message>
        <source>Cross %L1: %2 px off.</source>
        <translation>十字 %L1：偏差 %2 像素。</translation>
    </message>
    <message>
        <source>%L1: %2 px, %3 mm</source>
        <translation>%L1：%2 像素，%3 毫米</translation>
    </message>
    <message>
        <source>%L1: %2 px</source>
        <translation>%L1：%2 像素</translation>
    </message>
    <message>
        <source>Touches were %1 px (%2 mm) off on average, and at the most %3 px (%4 mm), at cross %L5.
Good are up to %6 px on average and %7 px at the most.</source>
        <translation>平均偏差 %1 像素（%2 毫米），最大偏差 %3 像素（%4 毫米），在十字 %L5 处。
平均不超过 %6 像素且最大不超过 %7 像素为合格。</translation>
    </message>
    <message>
        <source>Touches were %1 px off on average, and at the most %2 px, at cross %L3.
Good are up to %4 px on average and %5 px at the most.</source>
        <translation>平均偏差 %1 像素，最大偏差 %2 像素，在十字 %L3 处。
平均不超过 %4 像素且最大不超过 %5 像素为合格。</translation>
    </message>
</context>
<context>
    <name>Calibration_Dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>校准</translation>
    </message>
    <message>
        <source>Touch the four targets one after the other. ESC leaves.</source>
        <translation>请依次触摸四个目标点。按 ESC 退出。</translation>
    </message>
    <message>
        <source>The calibration ended because the screens have changed. It was discarded.</source>
        <translation>屏幕已发生变化，校准已结束，结果已放弃。</translation>
    </message>
    <message>
        <source>press ESC to back</source>
        <translation>按 ESC 返回</translation>
    </message>
    <message>
        <source>The calibration was discarded because nobody answered whether to save it. %1</source>
        <translation>无人回答是否保存，校准结果已放弃。%1</translation>
    </message>
    <message>
        <source>The calibration ended because the touch frame was lost.</source>
        <translation>触摸框断开，校准已结束。</translation>
    </message>
    <message>
        <source>The calibration ended with the link to the touch frame. It was discarded.</source>
        <translation>与触摸框的连接已断开，校准随之结束，结果已放弃。</translation>
    </message>
    <message>
        <source>The calibration ended because no target was touched for a while. It was discarded.</source>
        <translation>一段时间内没有触摸任何目标点，校准已结束，结果已放弃。</translation>
    </message>
    <message>
        <source>Calibration accuracy: %1%</source>
        <translation>校准精度：%1%</translation>
    </message>
</context>
<context>
    <name>HelpAction</name>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
</context>
<context>
    <name>HelpWindow</name>
    <message>
        <source>Quorvel manual</source>
        <translation>Quorvel 手册</translation>
    </message>
    <message>
        <source>Page of the manual</source>
        <translation>手册页面</translation>
    </message>
    <message>
        <source>Scroll up and down</source>
        <translation>上下滚动</translation>
    </message>
    <message>
        <source>Scroll to the side</source>
        <translation>左右滚动</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>后退(&amp;B)</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>前进(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Contents</source>
        <translation>目录(&amp;C)</translation>
    </message>
    <message>
        <source>C&amp;lose</source>
        <translation>关闭(&amp;L)</translation>
    </message>
    <message>
        <source>The manual is not installed. The package quorvel-doc brings it.</source>
        <translation>手册未安装。软件包 quorvel-doc 提供该手册。</translation>
    </message>
</context>
<context>
    <name>History</name>
    <message>
        <source>%1: cannot be written: %2</source>
        <translation>%1：无法写入：%2</translation>
    </message>
    <message>
        <source>%1: cannot be read: %2</source>
        <translation>%1：无法读取：%2</translation>
    </message>
</context>
<context>
    <name>LightCheckAction</name>
    <message>
        <source>L&amp;ight check...</source>
        <translation>灯检查(&amp;I)...</translation>
    </message>
</context>
<context>
    <name>LightCheck_dlg</name>
    <message>
        <source>Light check</source>
        <translation>灯检查</translation>
    </message>
    <message>
        <source>Not measured yet</source>
        <translation>尚未测量</translation>
    </message>
    <message>
        <source>&amp;Name of the unit:</source>
        <translation>设备名称(&amp;N)：</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>检查结果</translation>
    </message>
    <message>
        <source>&amp;Curves</source>
        <translation>曲线(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;All lights</source>
        <translation>所有灯(&amp;A)</translation>
    </message>
    <message>
        <source>All lights</source>
        <translation>所有灯</translation>
    </message>
    <message>
        <source>&amp;Key</source>
        <translation>图例(&amp;K)</translation>
    </message>
    <message>
        <source>Letters: w weak, d dead, n noisy, s saturated, o switched off. Dark strips: touches are missed; light ones: they jump. Bars outside: stretches with one thing wrong.</source>
        <translation>字母：w 弱，d 失效，n 噪声，s 饱和，o 已关闭。深色条带：触摸丢失；浅色条带：触摸跳动。外侧的条：存在同一问题的区段。</translation>
    </message>
    <message>
        <source>Curves: solid the level, dashed that of a healthy light, dotted the level then, dash-dotted the lowest that works; crosses: lights out of order.</source>
        <translation>曲线：实线为电平，虚线为正常灯的电平，点线为当时的电平，点划线为可工作的最低电平；叉号：有问题的灯。</translation>
    </message>
    <message>
        <source>The arrow keys go from light to light, in the picture of the frame and in the curves; Enter opens one in the light screen. In the curves + and - zoom, and 0 shows all.</source>
        <translation>在触摸框图和曲线中，方向键可逐个移动到各灯；回车键在灯设置中打开该灯。在曲线中，+ 和 - 用于缩放，0 显示全部。</translation>
    </message>
    <message>
        <source>Progress of the measurement</source>
        <translation>测量进度</translation>
    </message>
    <message>
        <source>&amp;Follow</source>
        <translation>持续测量(&amp;F)</translation>
    </message>
    <message>
        <source>Go on measuring until it is stopped</source>
        <translation>持续测量，直到停止</translation>
    </message>
    <message>
        <source>&amp;Measure</source>
        <translation>测量(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Remember</source>
        <translation>记住(&amp;R)</translation>
    </message>
    <message>
        <source>Keep this measurement as what is good for this unit</source>
        <translation>将本次测量保存为该设备的良好状态</translation>
    </message>
    <message>
        <source>Compare &amp;with</source>
        <translation>对比(&amp;W)</translation>
    </message>
    <message>
        <source>Re&amp;port...</source>
        <translation>报告(&amp;P)...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Scroll to the side</source>
        <translation>左右滚动</translation>
    </message>
    <message>
        <source>Scroll up and down</source>
        <translation>上下滚动</translation>
    </message>
    <message>
        <source>Curves of the levels</source>
        <translation>电平曲线</translation>
    </message>
    <message>
        <source>The touch frame is gone. Measuring begins anew when one is there.</source>
        <translation>触摸框已断开。重新接上后将重新开始测量。</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>停止(&amp;S)</translation>
    </message>
    <message>
        <source>Curves of the levels. %1</source>
        <translation>电平曲线。%1</translation>
    </message>
    <message>
        <source>&amp;What was remembered last</source>
        <translation>上次记住的测量(&amp;W)</translation>
    </message>
    <message>
        <source>A &amp;file...</source>
        <translation>文件(&amp;F)...</translation>
    </message>
    <message>
        <source>Compare with a file</source>
        <translation>与文件对比</translation>
    </message>
    <message>
        <source>Measurements (*.json *.csv)</source>
        <translation>测量文件 (*.json *.csv)</translation>
    </message>
    <message>
        <source>&amp;Nothing</source>
        <translation>不对比(&amp;N)</translation>
    </message>
    <message>
        <source>Remembered. What is measured from now on can be compared with it.</source>
        <translation>已记住。今后的测量可与它对比。</translation>
    </message>
    <message>
        <source>Write a report</source>
        <translation>写入报告</translation>
    </message>
    <message>
        <source>Documents (*.pdf)</source>
        <translation>文档 (*.pdf)</translation>
    </message>
    <message>
        <source>Pages (*.html)</source>
        <translation>网页 (*.html)</translation>
    </message>
    <message>
        <source>For programs (*.json)</source>
        <translation>供程序读取 (*.json)</translation>
    </message>
    <message>
        <source>Tables (*.csv)</source>
        <translation>表格 (*.csv)</translation>
    </message>
    <message>
        <source>%1: a report is a file whose name ends with .pdf, .html, .json or .csv</source>
        <translation>%1：报告文件的名称必须以 .pdf、.html、.json 或 .csv 结尾</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>无法写入 %1：%2</translation>
    </message>
    <message>
        <source>Written to %1.</source>
        <translation>已写入 %1。</translation>
    </message>
    <message>
        <source>PASS</source>
        <translation>合格</translation>
    </message>
    <message>
        <source>SERVICE NEEDED</source>
        <translation>需要维护</translation>
    </message>
    <message>
        <source>No touch frame is linked.</source>
        <translation>没有连接触摸框。</translation>
    </message>
    <message>
        <source>Measured %1</source>
        <translation>测量于 %1</translation>
    </message>
    <message>
        <source>Unit %1, measured %2</source>
        <translation>设备 %1，测量于 %2</translation>
    </message>
    <message>
        <source>Since %1 light %2 has changed most for the worse, by %3 % beside the others.</source>
        <translation>自 %1 以来，灯 %2 衰退最多，相对其他灯变化 %3 %。</translation>
    </message>
    <message>
        <source>Views</source>
        <translation>视图</translation>
    </message>
    <message>
        <source>Report...</source>
        <translation>报告...</translation>
    </message>
    <message numerus="yes">
        <source>Following the touch frame: %Ln scan(s) of each axis so far.</source>
        <translation>
            <numerusform>正在跟踪触摸框：每轴已扫描 %Ln 次。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LightModel</name>
    <message>
        <source>%1 of light %2: %3</source>
        <translation>灯 %2 的%1：%3</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>灯</translation>
    </message>
    <message>
        <source>Verdict</source>
        <translation>判定</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>电平</translation>
    </message>
    <message>
        <source>Healthy level</source>
        <translation>正常电平</translation>
    </message>
    <message>
        <source>Noise</source>
        <translation>噪声</translation>
    </message>
    <message>
        <source>Change, %</source>
        <translation>变化，%</translation>
    </message>
</context>
<context>
    <name>LightSet_dlg</name>
    <message>
        <source>Dialog</source>
        <translation>灯设置</translation>
    </message>
    <message>
        <source>ADCline Setting</source>
        <translation>ADC 线设置</translation>
    </message>
    <message>
        <source>ADC range:</source>
        <translation>ADC 范围：</translation>
    </message>
    <message>
        <source>Edge ADC range: </source>
        <translation>边缘 ADC 范围： </translation>
    </message>
    <message>
        <source>ADC threshold:</source>
        <translation>ADC 阈值：</translation>
    </message>
    <message>
        <source>Edge ADC threshold:</source>
        <translation>边缘 ADC 阈值：</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>Min</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max</translation>
    </message>
    <message>
        <source>ADC range, Min</source>
        <translation>ADC 范围，Min</translation>
    </message>
    <message>
        <source>ADC range, Max</source>
        <translation>ADC 范围，Max</translation>
    </message>
    <message>
        <source>Edge ADC range, Min</source>
        <translation>边缘 ADC 范围，Min</translation>
    </message>
    <message>
        <source>Edge ADC range, Max</source>
        <translation>边缘 ADC 范围，Max</translation>
    </message>
    <message>
        <source>ADC threshold</source>
        <translation>ADC 阈值</translation>
    </message>
    <message>
        <source>Edge ADC threshold</source>
        <translation>边缘 ADC 阈值</translation>
    </message>
    <message>
        <source>Default ADC settings</source>
        <translation>默认：ADC 设置</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>默认</translation>
    </message>
    <message>
        <source>Set the ADC settings</source>
        <translation>设定：ADC 设置</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>设定</translation>
    </message>
    <message>
        <source>Light Setting</source>
        <translation>灯设置</translation>
    </message>
    <message>
        <source>Light Num:</source>
        <translation>灯编号：</translation>
    </message>
    <message>
        <source>Light Num: axis of the chosen light, X or Y</source>
        <translation>灯编号：所选灯的轴，X 或 Y</translation>
    </message>
    <message>
        <source>Light Num: number of the chosen light</source>
        <translation>灯编号：所选灯的序号</translation>
    </message>
    <message>
        <source>Disable</source>
        <translation>禁用</translation>
    </message>
    <message>
        <source>ADC:</source>
        <translation>ADC：</translation>
    </message>
    <message>
        <source>ADC value of the chosen light</source>
        <translation>ADC：所选灯的值</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>ORG:</source>
        <translation>ORG：</translation>
    </message>
    <message>
        <source>ORG value of the chosen light</source>
        <translation>ORG：所选灯的值</translation>
    </message>
    <message>
        <source>AGC:</source>
        <translation>AGC：</translation>
    </message>
    <message>
        <source>AGC value of the chosen light</source>
        <translation>AGC：所选灯的值</translation>
    </message>
    <message>
        <source>AGC offset of the chosen light</source>
        <translation>所选灯的 AGC 偏移</translation>
    </message>
    <message>
        <source>signal intensity:</source>
        <translation>信号强度：</translation>
    </message>
    <message>
        <source>+ raises the signal intensity</source>
        <translation>+ 提高信号强度</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>- lowers the signal intensity</source>
        <translation>- 降低信号强度</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>WARNING!

Please don&apos;t touch the screan, and use your mouse to operat this dialog！</source>
        <translation>警告！

请勿触摸屏幕，请用鼠标操作此窗口！</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Num:%1  ADC:%2  AGC:%3</source>
        <translation>序号:%1  ADC:%2  AGC:%3</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>启用</translation>
    </message>
    <message>
        <source>%1: enter a whole number from 0 to %2</source>
        <translation>%1：请输入 0 到 %2 的整数</translation>
    </message>
    <message>
        <source>The smallest ADC value is above the largest</source>
        <translation>ADC 最小值大于最大值</translation>
    </message>
    <message>
        <source>The smallest ADC value at the edges is above the largest</source>
        <translation>边缘 ADC 最小值大于最大值</translation>
    </message>
    <message>
        <source>The touch frame has no such light</source>
        <translation>触摸框没有这个灯</translation>
    </message>
    <message>
        <source>No answer about light %1 %2</source>
        <translation>灯 %1 %2 没有应答</translation>
    </message>
    <message>
        <source>The touch frame has set other values</source>
        <translation>触摸框设定了其他值</translation>
    </message>
    <message>
        <source>This waits until the light check has ended</source>
        <translation>等待灯检查结束</translation>
    </message>
</context>
<context>
    <name>LightWall</name>
    <message>
        <source>The frame and its lights. %1</source>
        <translation>触摸框及其灯。%1</translation>
    </message>
    <message>
        <source>The frame and its lights</source>
        <translation>触摸框及其灯</translation>
    </message>
</context>
<context>
    <name>Link</name>
    <message>
        <source>The frame on USB that had taken over from the serial port %1 is gone. Open the port again to use it.</source>
        <translation>曾取代串口 %1 的 USB 触摸框已移除。如需使用该串口，请重新打开。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>校准</translation>
    </message>
    <message>
        <source>Calibrate your touch device, make it more suitable for your screen.</source>
        <translation>校准触摸设备，使其与屏幕更吻合。</translation>
    </message>
    <message>
        <source>&amp;Calibration</source>
        <translation>校准(&amp;C)</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>旋转</translation>
    </message>
    <message>
        <source>Rotate your touch device,
make it more suitable for your
screen</source>
        <translation>旋转触摸设备，
使其与屏幕方向
一致</translation>
    </message>
    <message>
        <source>&amp;Rotation</source>
        <translation>旋转(&amp;R)</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Set your touch device, make it more suitable for your custom.</source>
        <translation>按使用习惯设置触摸设备。</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Choose USB or UART mode, and set the TUIO options.</source>
        <translation>选择 USB 或 UART 模式，并设置 TUIO 选项。</translation>
    </message>
    <message>
        <source>Resets the touch frame</source>
        <translation>复位触摸框</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>复位</translation>
    </message>
    <message>
        <source>Shows the versions of the tool and of the touch frame</source>
        <translation>显示本工具和触摸框的版本</translation>
    </message>
    <message>
        <source>Have not linked equipment</source>
        <translation>未连接设备</translation>
    </message>
    <message>
        <source>&amp;What to do next</source>
        <translation>下一步做什么(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Menu</source>
        <translation>菜单(&amp;M)</translation>
    </message>
    <message>
        <source>Quorvel v%1</source>
        <translation>Quorvel v%1</translation>
    </message>
    <message>
        <source>Quorvel (simulated touch frame)</source>
        <translation>Quorvel（模拟触摸框）</translation>
    </message>
    <message>
        <source>&amp;Setting</source>
        <translation>设置(&amp;S)</translation>
    </message>
    <message>
        <source>S&amp;moothing</source>
        <translation>平滑(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>连接(&amp;C)</translation>
    </message>
    <message>
        <source>Already link equipment</source>
        <translation>设备已连接</translation>
    </message>
    <message>
        <source>Reset the device</source>
        <translation>复位设备</translation>
    </message>
</context>
<context>
    <name>PlottedCurves</name>
    <message>
        <source>Lights of X</source>
        <translation>X 轴的灯</translation>
    </message>
    <message>
        <source>Lights of Y</source>
        <translation>Y 轴的灯</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>电平</translation>
    </message>
    <message>
        <source>Change, %</source>
        <translation>变化，%</translation>
    </message>
</context>
<context>
    <name>PluginFolder</name>
    <message>
        <source>%1 cannot be followed; remove this link</source>
        <translation>无法跟随 %1；请删除此链接</translation>
    </message>
    <message>
        <source>it holds more than %1 files; remove what is no plug-in</source>
        <translation>其中的文件超过 %1 个；请移除不是插件的文件</translation>
    </message>
    <message>
        <source>%1 cannot be read (%2)</source>
        <translation>无法读取 %1（%2）</translation>
    </message>
    <message>
        <source>%1 belongs to user %2; &quot;chown root&quot; would let it in</source>
        <translation>%1 属于用户 %2；执行“chown root”即可放行</translation>
    </message>
    <message>
        <source>everybody can write to %1; &quot;chmod go-w&quot; would let it in</source>
        <translation>任何人都可写入 %1；执行“chmod go-w”即可放行</translation>
    </message>
    <message>
        <source>group %1 can write to %2; &quot;chmod go-w&quot; would let it in</source>
        <translation>%1 组可写入 %2；执行“chmod go-w”即可放行</translation>
    </message>
    <message>
        <source>the plug-in folder %1 is left out: %2</source>
        <translation>未使用插件文件夹 %1：%2</translation>
    </message>
</context>
<context>
    <name>PortChoice</name>
    <message>
        <source>%1: %2</source>
        <comment>port, adapter</comment>
        <translation>%1：%2</translation>
    </message>
</context>
<context>
    <name>Posix_QextSerialPort</name>
    <message>
        <source>The serial port %1 is open already. Close it first.</source>
        <translation>串口 %1 已经打开。请先将其关闭。</translation>
    </message>
    <message>
        <source>No serial port is chosen. Enter a name such as ttyUSB0.</source>
        <translation>未选择串口。请输入名称，例如 ttyUSB0。</translation>
    </message>
    <message>
        <source>There is no baud rate number %1. Choose 0 (50 baud) to 21 (256000 baud).</source>
        <translation>没有编号为 %1 的波特率。请选择 0（50 波特）到 21（256000 波特）。</translation>
    </message>
    <message>
        <source>There is no data bits setting number %1. Choose 0 (5 bits) to 3 (8 bits).</source>
        <translation>没有编号为 %1 的数据位设置。请选择 0（5 位）到 3（8 位）。</translation>
    </message>
    <message>
        <source>There is no parity number %1. Choose 0 (none) to 4 (space).</source>
        <translation>没有编号为 %1 的校验方式。请选择 0（无）到 4（空格）。</translation>
    </message>
    <message>
        <source>1.5 stop bits cannot be set here. Choose 1 or 2 stop bits.</source>
        <translation>此处不能设为 1.5 个停止位。请选择 1 或 2 个停止位。</translation>
    </message>
    <message>
        <source>There is no stop bits setting number %1. Choose 0 (1 bit) or 2 (2 bits).</source>
        <translation>没有编号为 %1 的停止位设置。请选择 0（1 位）或 2（2 位）。</translation>
    </message>
    <message>
        <source>With 5 data bits a line makes 1.5 stop bits of 2. Choose 1 stop bit or more data bits.</source>
        <translation>使用 5 个数据位时，2 个停止位会变成 1.5 个。请选择 1 个停止位或更多数据位。</translation>
    </message>
    <message>
        <source>There is no flow control number %1. Choose 0 (off), 1 (hardware) or 2 (XON/XOFF).</source>
        <translation>没有编号为 %1 的流控制。请选择 0（关闭）、1（硬件）或 2（XON/XOFF）。</translation>
    </message>
    <message>
        <source>A time-out of %1 ms cannot be. Choose 0 ms or more.</source>
        <translation>超时不能为 %1 毫秒。请选择 0 毫秒或更长。</translation>
    </message>
    <message>
        <source>The serial port is not open.</source>
        <translation>串口未打开。</translation>
    </message>
    <message>
        <source>The line at %1 takes no more bytes. Check the cable and the flow control.</source>
        <translation>%1 的线路不再接收数据。请检查电缆和流控制。</translation>
    </message>
    <message>
        <source>The line at %1 does not take the bytes that wait, so its settings stay. Check the cable and the flow control.</source>
        <translation>%1 的线路不接收等待发送的数据，因此其设置保持不变。请检查电缆和流控制。</translation>
    </message>
    <message>
        <source>%1 runs at %2 baud instead of %3. Choose another rate.</source>
        <translation>%1 以 %2 波特而不是 %3 波特运行。请选择其他波特率。</translation>
    </message>
    <message>
        <source>%1 does not do %2 baud. Choose another rate.</source>
        <translation>%1 不支持 %2 波特。请选择其他波特率。</translation>
    </message>
    <message>
        <source>%1 does not do %2 data bits. Choose another number.</source>
        <translation>%1 不支持 %2 个数据位。请选择其他数值。</translation>
    </message>
    <message>
        <source>%1 does not do this parity. Choose another parity.</source>
        <translation>%1 不支持此校验方式。请选择其他校验方式。</translation>
    </message>
    <message>
        <source>%1 does not do this number of stop bits. Choose another number.</source>
        <translation>%1 不支持此停止位数。请选择其他数值。</translation>
    </message>
    <message>
        <source>%1 does not do this flow control. Choose another one.</source>
        <translation>%1 不支持此流控制。请选择其他流控制。</translation>
    </message>
    <message>
        <source>%1 is not a serial port. Choose a name such as ttyUSB0.</source>
        <translation>%1 不是串口。请选择名称，例如 ttyUSB0。</translation>
    </message>
    <message>
        <source>The serial port %1 cannot be opened: %2.</source>
        <translation>无法打开串口 %1：%2。</translation>
    </message>
    <message>
        <source>The serial port %1 is gone. Plug it in and open it again.</source>
        <translation>串口 %1 已消失。请插好后重新打开。</translation>
    </message>
</context>
<context>
    <name>QMessageBox</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
</context>
<context>
    <name>QtSingleApplication</name>
    <message>
        <source>A second start of this program cannot be noticed. Set XDG_RUNTIME_DIR to a folder that only this user can enter.</source>
        <translation>无法察觉本程序的第二次启动。请将 XDG_RUNTIME_DIR 设为只有此用户能进入的文件夹。</translation>
    </message>
    <message>
        <source>it cannot be used (%1)</source>
        <translation>无法使用（%1）</translation>
    </message>
    <message>
        <source>it is not a folder</source>
        <translation>它不是文件夹</translation>
    </message>
    <message>
        <source>it belongs to another user</source>
        <translation>它属于另一个用户</translation>
    </message>
    <message>
        <source>others can enter it; &quot;chmod 700&quot; it</source>
        <translation>其他用户可以进入；请对其执行“chmod 700”</translation>
    </message>
    <message>
        <source>its name is too long</source>
        <translation>其名称过长</translation>
    </message>
    <message>
        <source>%1 is no place to find the running program in: %2.</source>
        <translation>无法在 %1 找到正在运行的程序：%2。</translation>
    </message>
    <message>
        <source>%1 cannot be written, so a second start of this program is not noticed. Make room and check who may write there.</source>
        <translation>无法写入 %1，因此察觉不到本程序的第二次启动。请腾出空间，并检查那里的写入权限。</translation>
    </message>
    <message>
        <source>%1 cannot be made (%2), so a second start of this program ends without a word.</source>
        <translation>无法创建 %1（%2），因此本程序的第二次启动会不作提示地结束。</translation>
    </message>
</context>
<context>
    <name>Reader</name>
    <message>
        <source>%1: cannot be read: %2</source>
        <translation>%1：无法读取：%2</translation>
    </message>
    <message>
        <source>%1: is no file, and so no recording</source>
        <translation>%1：不是文件，因此不是录制文件</translation>
    </message>
    <message>
        <source>%1: is larger than %2 MiB, which no recording is</source>
        <translation>%1：大于 %2 MiB，不可能是录制文件</translation>
    </message>
    <message>
        <source>%1: is no capture file: %2</source>
        <translation>%1：不是抓包文件：%2</translation>
    </message>
    <message>
        <source>%1: is a capture file of something else: its link type is %2, that of a recording %3</source>
        <translation>%1：是其他内容的抓包文件：其链路类型为 %2，录制文件应为 %3</translation>
    </message>
    <message>
        <source>%1: packet %2 tells of no traffic with a touch frame, or in a newer format</source>
        <translation>%1：数据包 %2 不是与触摸框的通信，或采用了更新的格式</translation>
    </message>
    <message>
        <source>%1: behind packet %2: %3</source>
        <translation>%1：数据包 %2 之后：%3</translation>
    </message>
</context>
<context>
    <name>RecordAction</name>
    <message>
        <source>Recording into %1, but that cannot be written: %2.</source>
        <translation>正在录制到 %1，但无法写入：%2。</translation>
    </message>
    <message numerus="yes">
        <source>Recording into %1, where %Ln packet(s) are missing.</source>
        <translation>
            <numerusform>正在录制到 %1，其中缺少 %Ln 个数据包。</numerusform>
        </translation>
    </message>
    <message>
        <source>Recording into %1.</source>
        <translation>正在录制到 %1。</translation>
    </message>
    <message>
        <source>Record what travels to and from the touch frame</source>
        <translation>录制与触摸框之间的通信</translation>
    </message>
    <message>
        <source>Recordings (*.pcap)</source>
        <translation>录制文件 (*.pcap)</translation>
    </message>
    <message>
        <source>No recording</source>
        <translation>未能录制</translation>
    </message>
    <message>
        <source>Stop &amp;recording</source>
        <translation>停止录制(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Record...</source>
        <translation>录制(&amp;R)...</translation>
    </message>
</context>
<context>
    <name>Rotation_dlg</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>旋转</translation>
    </message>
    <message>
        <source>Your current rotation is:</source>
        <translation>当前旋转角度：</translation>
    </message>
    <message>
        <source>0 degrees</source>
        <translation>0 度</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>90 degrees</source>
        <translation>90 度</translation>
    </message>
    <message>
        <source>90</source>
        <translation>90</translation>
    </message>
    <message>
        <source>180 degrees</source>
        <translation>180 度</translation>
    </message>
    <message>
        <source>180</source>
        <translation>180</translation>
    </message>
    <message>
        <source>270 degrees</source>
        <translation>270 度</translation>
    </message>
    <message>
        <source>270</source>
        <translation>270</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>The touch frame has not answered since %1.</source>
        <translation>触摸框自 %1 起没有应答。</translation>
    </message>
</context>
<context>
    <name>ScanWatch</name>
    <message>
        <source>No answer from the touch frame</source>
        <translation>触摸框没有应答</translation>
    </message>
    <message>
        <source>Scan incomplete: page %1 of %2</source>
        <translation>扫描不完整：第 %1 页，共 %2 页</translation>
    </message>
</context>
<context>
    <name>Scrolled</name>
    <message>
        <source>Scroll to the side</source>
        <translation>左右滚动</translation>
    </message>
    <message>
        <source>Scroll up and down</source>
        <translation>上下滚动</translation>
    </message>
</context>
<context>
    <name>Setting_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Usage and environment</source>
        <translation>用途与环境</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>用途</translation>
    </message>
    <message>
        <source>This equipment is mainly used for:</source>
        <translation>本设备主要用于：</translation>
    </message>
    <message>
        <source>Operate</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>书写</translation>
    </message>
    <message>
        <source>Percussion</source>
        <translation>敲击</translation>
    </message>
    <message>
        <source>Multipoint</source>
        <translation>多点</translation>
    </message>
    <message>
        <source>Current use</source>
        <translation>当前用途</translation>
    </message>
    <message>
        <source>Environment</source>
        <translation>环境</translation>
    </message>
    <message>
        <source>The environment around you is:</source>
        <translation>您周围的环境是：</translation>
    </message>
    <message>
        <source>Indoor</source>
        <translation>室内</translation>
    </message>
    <message>
        <source>Rain</source>
        <translation>雨天</translation>
    </message>
    <message>
        <source>Sunshine</source>
        <translation>日照</translation>
    </message>
    <message>
        <source>Shock</source>
        <translation>振动</translation>
    </message>
    <message>
        <source>Current environment</source>
        <translation>当前环境</translation>
    </message>
    <message>
        <source>Advanced settings</source>
        <translation>高级设置</translation>
    </message>
    <message>
        <source>Advance</source>
        <translation>高级</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>&amp;Details</source>
        <translation>详细信息(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;What to do next</source>
        <translation>下一步做什么(&amp;W)</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>详细信息</translation>
    </message>
    <message>
        <source>What to do next</source>
        <translation>下一步做什么</translation>
    </message>
    <message>
        <source>Quorvel: %1</source>
        <translation>Quorvel：%1</translation>
    </message>
    <message>
        <source>Quorvel: a touch frame is linked</source>
        <translation>Quorvel：已连接触摸框</translation>
    </message>
    <message>
        <source>Quorvel: no touch frame is linked</source>
        <translation>Quorvel：未连接触摸框</translation>
    </message>
    <message>
        <source>Linked by USB.</source>
        <translation>已通过 USB 连接。</translation>
    </message>
    <message>
        <source>Linked by USB, at %1.</source>
        <translation>已通过 USB 连接，位于 %1。</translation>
    </message>
    <message>
        <source>Linked over the serial port %1.</source>
        <translation>已通过串口 %1 连接。</translation>
    </message>
</context>
<context>
    <name>SupportFileAction</name>
    <message>
        <source>Support &amp;file...</source>
        <translation>支持文件(&amp;F)...</translation>
    </message>
    <message>
        <source>screen %1: %2 x %3 at %4, %5; scale %6</source>
        <translation>屏幕 %1：%2 x %3，位于 %4, %5；缩放 %6</translation>
    </message>
    <message>
        <source>desktop: %1 x %2, by %3</source>
        <translation>桌面：%1 x %2，由 %3 显示</translation>
    </message>
</context>
<context>
    <name>SupportFile_dlg</name>
    <message>
        <source>Support file</source>
        <translation>支持文件</translation>
    </message>
    <message>
        <source>These files are written when you save them, and nothing else is. Names of users and of the machine have been taken out; look through them before you pass them on.</source>
        <translation>保存时只写入这些文件，不含其他内容。用户名和计算机名已被去除；请在转交之前先查看一遍。</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Content</source>
        <translation>内容</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>保存(&amp;S)...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Written to %1.</source>
        <translation>已写入 %1。</translation>
    </message>
    <message>
        <source>Save the support file</source>
        <translation>保存支持文件</translation>
    </message>
    <message>
        <source>Archives (*.zip)</source>
        <translation>压缩包 (*.zip)</translation>
    </message>
</context>
<context>
    <name>Tray</name>
    <message>
        <source>Show</source>
        <translation>显示</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>This desktop has no tray to hide in. Start quorvel again to show its window, or quorvel -close to end it.</source>
        <translation>此桌面没有可供隐藏的系统托盘。再次启动 quorvel 可显示其窗口，运行 quorvel -close 可退出程序。</translation>
    </message>
    <message>
        <source>Quorvel goes on</source>
        <translation>Quorvel 仍在运行</translation>
    </message>
    <message>
        <source>Show the window</source>
        <translation>显示窗口</translation>
    </message>
    <message>
        <source>End Quorvel</source>
        <translation>退出 Quorvel</translation>
    </message>
</context>
<context>
    <name>TryOut_dlg</name>
    <message>
        <source>Try out gestures</source>
        <translation>试用手势</translation>
    </message>
    <message>
        <source>Field for gestures</source>
        <translation>手势区域</translation>
    </message>
    <message>
        <source>Press and hold, click twice, drag or turn the wheel here, with a finger or a mouse.</source>
        <translation>请用手指或鼠标在此长按、双击、拖动或转动滚轮。</translation>
    </message>
    <message>
        <source>Gestures before the last one</source>
        <translation>上一个手势之前的手势</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>清空(&amp;L)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Wheel: less than a step in %L1 ms</source>
        <translation>滚轮：%L1 毫秒内不足一格</translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) to the left in %L1 ms</source>
        <translation>
            <numerusform>滚轮：%L1 毫秒内向左 %Ln 格</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) to the right in %L1 ms</source>
        <translation>
            <numerusform>滚轮：%L1 毫秒内向右 %Ln 格</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) up in %L1 ms</source>
        <translation>
            <numerusform>滚轮：%L1 毫秒内向上 %Ln 格</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) down in %L1 ms</source>
        <translation>
            <numerusform>滚轮：%L1 毫秒内向下 %Ln 格</numerusform>
        </translation>
    </message>
    <message>
        <source>On this desktop two clicks within %L1 ms are a double click, two taps also within %L2 px; what is down for %L3 ms is held, and what moves %L4 px is dragged.</source>
        <translation>在此桌面上，%L1 毫秒内的两次点击为双击，两次轻触还须相距不超过 %L2 像素；按住 %L3 毫秒为长按，移动 %L4 像素为拖动。</translation>
    </message>
    <message>
        <source>Tap: down for %L1 ms, moved %L2 px</source>
        <translation>轻触：按下 %L1 毫秒，移动 %L2 像素</translation>
    </message>
    <message>
        <source>Click: down for %L1 ms, moved %L2 px</source>
        <translation>单击：按下 %L1 毫秒，移动 %L2 像素</translation>
    </message>
    <message>
        <source>Tap %L1 ms after the one before and %L2 px from it: no double tap</source>
        <translation>轻触：距上一次 %L1 毫秒、%L2 像素，不是轻触两次</translation>
    </message>
    <message>
        <source>Click %L1 ms after the one before and %L2 px from it: no double click</source>
        <translation>单击：距上一次 %L1 毫秒、%L2 像素，不是双击</translation>
    </message>
    <message>
        <source>Double tap: %L1 ms and %L2 px apart</source>
        <translation>轻触两次：间隔 %L1 毫秒，相距 %L2 像素</translation>
    </message>
    <message>
        <source>Double click: %L1 ms and %L2 px apart</source>
        <translation>双击：间隔 %L1 毫秒，相距 %L2 像素</translation>
    </message>
    <message>
        <source>Touched for %L1 ms, moved %L2 px: no right click</source>
        <translation>触摸 %L1 毫秒，移动 %L2 像素：没有右键单击</translation>
    </message>
    <message>
        <source>Pressed for %L1 ms, moved %L2 px: no right click</source>
        <translation>按住 %L1 毫秒，移动 %L2 像素：没有右键单击</translation>
    </message>
    <message>
        <source>Right click after %L1 ms, moved %L2 px</source>
        <translation>%L1 毫秒后右键单击，移动 %L2 像素</translation>
    </message>
    <message>
        <source>Right click: down for %L1 ms, moved %L2 px</source>
        <translation>右键单击：按下 %L1 毫秒，移动 %L2 像素</translation>
    </message>
    <message>
        <source>Drag by touch of %L1 px in %L2 ms</source>
        <translation>触摸拖动：%L2 毫秒内 %L1 像素</translation>
    </message>
    <message>
        <source>Drag of %L1 px in %L2 ms</source>
        <translation>拖动：%L2 毫秒内 %L1 像素</translation>
    </message>
</context>
<context>
    <name>Version_Dlg</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
    <message>
        <source>Versions</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Device version:</source>
        <translation>设备版本：</translation>
    </message>
    <message>
        <source>Hardware version:</source>
        <translation>硬件版本：</translation>
    </message>
    <message>
        <source>Backs up for a firmware update and closes the tool</source>
        <translation>为固件更新做备份并关闭本工具</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Service version: %1</source>
        <translation>程序版本：%1</translation>
    </message>
    <message>
        <source>Device version: %1.%2.%3.%4</source>
        <translation>设备版本：%1.%2.%3.%4</translation>
    </message>
    <message>
        <source>Hardware: %1 - %2</source>
        <translation>硬件：%1 - %2</translation>
    </message>
    <message>
        <source>SID: %1 - %2</source>
        <translation>SID：%1 - %2</translation>
    </message>
    <message>
        <source>PID: %1 - %2</source>
        <comment>family, date and number</comment>
        <translation>PID：%1 - %2</translation>
    </message>
</context>
<context>
    <name>WindowMenu</name>
    <message>
        <source>&amp;Try out gestures</source>
        <translation>试用手势(&amp;T)</translation>
    </message>
    <message>
        <source>Check c&amp;alibration</source>
        <translation>检查校准(&amp;A)</translation>
    </message>
</context>
<context>
    <name>Writer</name>
    <message>
        <source>%1: is a symbolic link, which a recording does not follow: name the file itself</source>
        <translation>%1：是符号链接，录制不会跟随：请直接指定该文件</translation>
    </message>
    <message>
        <source>%1: cannot be written: %2</source>
        <translation>%1：无法写入：%2</translation>
    </message>
    <message>
        <source>%1: is no file: choose another name</source>
        <translation>%1：不是文件：请另选名称</translation>
    </message>
    <message>
        <source>%1: another program is recording into it: choose another name</source>
        <translation>%1：另一个程序正在录制到此文件：请另选名称</translation>
    </message>
    <message>
        <source>%1: exists and is no recording: choose another name</source>
        <translation>%1：已存在且不是录制文件：请另选名称</translation>
    </message>
    <message>
        <source>a recording has at most %1 MiB</source>
        <translation>录制文件最大为 %1 MiB</translation>
    </message>
</context>
<context>
    <name>advconnect_dlg</name>
    <message>
        <source>Advance Connect Setting</source>
        <translation>高级连接设置</translation>
    </message>
    <message>
        <source>TUIO</source>
        <translation>TUIO</translation>
    </message>
    <message>
        <source>Socket:</source>
        <translation>套接字：</translation>
    </message>
    <message>
        <source>UDP</source>
        <translation>UDP</translation>
    </message>
    <message>
        <source>TCP</source>
        <translation>TCP</translation>
    </message>
    <message>
        <source>TUIO Version:</source>
        <translation>TUIO 版本：</translation>
    </message>
    <message>
        <source>TUIO 2.0</source>
        <translation>TUIO 2.0</translation>
    </message>
    <message>
        <source>TUIO 1.1</source>
        <translation>TUIO 1.1</translation>
    </message>
    <message>
        <source>UART</source>
        <translation>UART</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>确定(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
</context>
<context>
    <name>advset_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>诊断</translation>
    </message>
    <message>
        <source>Test the signals</source>
        <translation>测试：信号</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>测试</translation>
    </message>
    <message>
        <source>Light Setting</source>
        <translation>灯设置</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>bundle::Archive</name>
    <message>
        <source>%1 cannot be written: %2. Choose another place.</source>
        <translation>无法写入 %1：%2。请另选位置。</translation>
    </message>
    <message>
        <source>%1 exists and is no support file. Choose another name.</source>
        <translation>%1 已存在且不是支持文件。请另选名称。</translation>
    </message>
    <message>
        <source>The support file cannot be made: %1.</source>
        <translation>无法生成支持文件：%1。</translation>
    </message>
</context>
<context>
    <name>bundle::Contents</name>
    <message>
        <source>frame: %1:%2, release %3</source>
        <translation>触摸框：%1:%2，版本 %3</translation>
    </message>
    <message>
        <source>firmware: revision %1, checksum %2, family %3, date %4, number %5</source>
        <translation>固件：修订 %1，校验和 %2，系列 %3，日期 %4，编号 %5</translation>
    </message>
    <message>
        <source>program: %1 %2</source>
        <translation>程序：%1 %2</translation>
    </message>
    <message>
        <source>toolkit: Qt %1, built with %2</source>
        <translation>工具包：Qt %1，构建时为 %2</translation>
    </message>
    <message>
        <source>system: %1</source>
        <translation>系统：%1</translation>
    </message>
    <message>
        <source>kernel: %1 %2 on %3</source>
        <translation>内核：%1 %2，架构 %3</translation>
    </message>
    <message>
        <source>link: none</source>
        <translation>连接：无</translation>
    </message>
    <message>
        <source>link: %1</source>
        <translation>连接：%1</translation>
    </message>
    <message>
        <source>the link begins</source>
        <translation>连接开始</translation>
    </message>
    <message>
        <source>the link ends</source>
        <translation>连接结束</translation>
    </message>
    <message numerus="yes">
        <source>    (%n more time(s))</source>
        <translation>
            <numerusform>    （又 %n 次）</numerusform>
        </translation>
    </message>
    <message>
        <source>What a support engineer needs to know of a touch frame and its machine.</source>
        <translation>支持工程师需要了解的触摸框及其计算机的情况。</translation>
    </message>
    <message>
        <source>Names of users, their groups and homes, and of the machine have been replaced by &lt;user&gt;, &lt;group&gt;, &lt;home&gt; and &lt;machine&gt;.</source>
        <translation>用户名、用户组、主目录和计算机名已替换为 &lt;user&gt;、&lt;group&gt;、&lt;home&gt; 和 &lt;machine&gt;。</translation>
    </message>
    <message>
        <source>what there is</source>
        <translation>包含哪些内容</translation>
    </message>
    <message>
        <source>what keeps the frame from working</source>
        <translation>触摸框无法工作的原因</translation>
    </message>
    <message>
        <source>the same for programs</source>
        <translation>同样的内容，供程序读取</translation>
    </message>
    <message>
        <source>versions of program, toolkit, system and frame</source>
        <translation>程序、工具包、系统和触摸框的版本</translation>
    </message>
    <message>
        <source>the settings file</source>
        <translation>设置文件</translation>
    </message>
    <message>
        <source>There is no settings file that can be read.</source>
        <translation>没有可读取的设置文件。</translation>
    </message>
    <message>
        <source>A program without windows does not know the screens.</source>
        <translation>没有窗口的程序无法了解屏幕。</translation>
    </message>
    <message>
        <source>the screens, in native pixels</source>
        <translation>屏幕，以物理像素计</translation>
    </message>
    <message>
        <source>No frames went either way in the last minute.</source>
        <translation>最近一分钟内没有任何数据往来。</translation>
    </message>
    <message>
        <source>the frames of the last minute; it can be replayed</source>
        <translation>最近一分钟的数据帧；可以回放</translation>
    </message>
</context>
<context>
    <name>capture::Recorder</name>
    <message>
        <source>The recording %1 cannot be written: %2. The link goes on, and what is missing in the recording is counted.</source>
        <translation>无法写入录制文件 %1：%2。连接继续，缺少的部分会被计数。</translation>
    </message>
</context>
<context>
    <name>connect_dlg</name>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>&amp;USB, linked as soon as it is plugged in</source>
        <translation>USB，插入后立即连接(&amp;U)</translation>
    </message>
    <message>
        <source>U&amp;ART, a serial port</source>
        <translation>UART，串口(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>端口(&amp;P)：</translation>
    </message>
    <message>
        <source>Port, by name or path</source>
        <translation>端口，名称或路径</translation>
    </message>
    <message>
        <source>Refresh the list of serial ports</source>
        <translation>刷新：串口列表</translation>
    </message>
    <message>
        <source>Re&amp;fresh</source>
        <translation>刷新(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Rate, baud:</source>
        <translation>波特率(&amp;R)：</translation>
    </message>
    <message>
        <source>&amp;Data bits:</source>
        <translation>数据位(&amp;D)：</translation>
    </message>
    <message>
        <source>Pari&amp;ty:</source>
        <translation>校验(&amp;T)：</translation>
    </message>
    <message>
        <source>&amp;Stop bits:</source>
        <translation>停止位(&amp;S)：</translation>
    </message>
    <message>
        <source>Open the chosen connection</source>
        <translation>打开：所选连接</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>打开(&amp;O)</translation>
    </message>
    <message>
        <source>Search for the rate at which a frame answers</source>
        <translation>查找触摸框应答的波特率</translation>
    </message>
    <message>
        <source>Asks for a frame at the chosen rate, then at 9600, 19200, 38400, 57600 and 115200 baud.</source>
        <translation>先以所选波特率询问触摸框，再依次尝试 9600、19200、38400、57600 和 115200 波特。</translation>
    </message>
    <message>
        <source>Fi&amp;nd</source>
        <translation>查找(&amp;N)</translation>
    </message>
    <message>
        <source>Closes the serial port</source>
        <translation>关闭串口</translation>
    </message>
    <message>
        <source>&amp;Close port</source>
        <translation>关闭串口(&amp;C)</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>State of the connection</source>
        <translation>连接状态</translation>
    </message>
    <message>
        <source>unknown (%1)</source>
        <translation>未知 (%1)</translation>
    </message>
    <message>
        <source>The frame took over from the serial port. Unplug it to use the port.</source>
        <translation>USB 上的触摸框已取代串口。拔下它即可使用串口。</translation>
    </message>
    <message>
        <source>No touch frame was found by USB. One that is plugged in is connected at once.</source>
        <translation>USB 上未找到触摸框。插入后会立即连接。</translation>
    </message>
    <message>
        <source>The search was stopped.</source>
        <translation>查找已停止。</translation>
    </message>
    <message>
        <source>%1 cannot be written: these choices are not kept.</source>
        <translation>无法写入 %1：这些选择未能保存。</translation>
    </message>
    <message>
        <source>None</source>
        <comment>parity</comment>
        <translation>无</translation>
    </message>
    <message>
        <source>Odd</source>
        <comment>parity</comment>
        <translation>奇</translation>
    </message>
    <message>
        <source>Even</source>
        <comment>parity</comment>
        <translation>偶</translation>
    </message>
    <message>
        <source>Mark</source>
        <comment>parity</comment>
        <translation>标记</translation>
    </message>
    <message>
        <source>Space</source>
        <comment>parity</comment>
        <translation>空格</translation>
    </message>
    <message>
        <source>1.5</source>
        <comment>stop bits</comment>
        <translation>1.5</translation>
    </message>
    <message>
        <source>Serial ports cannot be set to 1.5 stop bits here.</source>
        <translation>此处的串口不能设为 1.5 个停止位。</translation>
    </message>
    <message>
        <source>No frame answers at %1 baud. Check the cable and the port.</source>
        <translation>在 %1 波特下没有触摸框应答。请检查电缆和端口。</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>A touch frame is connected by USB.</source>
        <translation>已通过 USB 连接触摸框。</translation>
    </message>
    <message>
        <source>The serial port %1 is open.</source>
        <translation>串口 %1 已打开。</translation>
    </message>
    <message>
        <source>A touch frame answers there.</source>
        <translation>该串口上的触摸框有应答。</translation>
    </message>
    <message>
        <source>Nothing has come from a touch frame there yet.</source>
        <translation>尚未从该串口收到触摸框的数据。</translation>
    </message>
    <message>
        <source>Looking for a frame at %1 baud.</source>
        <translation>正以 %1 波特查找触摸框。</translation>
    </message>
    <message>
        <source>A frame answers at %1 baud.</source>
        <translation>触摸框在 %1 波特下应答。</translation>
    </message>
    <message>
        <source>A frame answers.</source>
        <translation>触摸框有应答。</translation>
    </message>
    <message>
        <source>No answer: check cable and rate.</source>
        <translation>没有应答：请检查电缆和波特率。</translation>
    </message>
    <message>
        <source>No touch frame is connected, no serial port is open.</source>
        <translation>没有连接触摸框，也没有打开串口。</translation>
    </message>
    <message>
        <source>No touch frame is connected.</source>
        <translation>没有连接触摸框。</translation>
    </message>
    <message>
        <source>The serial port %1 is open but not used.</source>
        <translation>串口 %1 已打开，但未被使用。</translation>
    </message>
</context>
<context>
    <name>doctor::Answers</name>
    <message>
        <source>No touch frame is linked.</source>
        <translation>没有连接触摸框。</translation>
    </message>
    <message>
        <source>Try again.</source>
        <translation>请重试。</translation>
    </message>
    <message>
        <source>The frame could not be asked.</source>
        <translation>无法询问触摸框。</translation>
    </message>
    <message>
        <source>It answers after %1 ms.</source>
        <translation>它在 %1 毫秒后应答。</translation>
    </message>
    <message>
        <source>It answers at %1, after %2 ms.</source>
        <translation>它在 %1 处应答，用时 %2 毫秒。</translation>
    </message>
    <message>
        <source>No frame answers at %1.</source>
        <translation>%1 处没有触摸框应答。</translation>
    </message>
    <message>
        <source>Check the cable, and look for the frame&apos;s rate with &quot;Find&quot; in the window &quot;Connect&quot;.</source>
        <translation>请检查电缆，并在“连接”窗口中用“查找”确定触摸框的波特率。</translation>
    </message>
    <message>
        <source>The frame does not answer.</source>
        <translation>触摸框没有应答。</translation>
    </message>
    <message>
        <source>Unplug it, wait for ten seconds and plug it in again, at another USB port if need be.</source>
        <translation>请拔下，等待十秒后重新插入，必要时换一个 USB 接口。</translation>
    </message>
    <message>
        <source>The serial port is set to %1 baud.</source>
        <translation>串口设置为 %1 波特。</translation>
    </message>
    <message>
        <source>The frame sends no reports.</source>
        <translation>触摸框不发送报告。</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, without a hub between.</source>
        <translation>请拔下，不经集线器重新插入。</translation>
    </message>
    <message>
        <source>A report takes %1 ms, where 67 are usual.</source>
        <translation>一份报告用时 %1 毫秒，通常为 67 毫秒。</translation>
    </message>
    <message>
        <source>Plug the frame in without a hub, and see what else keeps this machine busy.</source>
        <translation>请不经集线器插入触摸框，并查看计算机还在忙什么。</translation>
    </message>
    <message>
        <source>A report takes %1 ms.</source>
        <translation>一份报告用时 %1 毫秒。</translation>
    </message>
    <message>
        <source>A frame on a serial line does not say its generation.</source>
        <translation>串口线路上的触摸框不报告其代次。</translation>
    </message>
    <message>
        <source>It is of the older generation, which does not say its firmware.</source>
        <translation>它属于旧一代，不报告固件版本。</translation>
    </message>
    <message>
        <source>It is of the current generation, with the firmware %1.</source>
        <translation>它属于当前一代，固件为 %1。</translation>
    </message>
    <message>
        <source>It is of the current generation, but does not say its firmware.</source>
        <translation>它属于当前一代，但没有报告固件版本。</translation>
    </message>
    <message>
        <source>Plug it in again; a frame that stays so needs its firmware anew.</source>
        <translation>请重新插入；若仍然如此，触摸框需要重新写入固件。</translation>
    </message>
</context>
<context>
    <name>doctor::Desktop</name>
    <message>
        <source>This session has no desktop, as one over ssh.</source>
        <translation>此会话没有桌面，例如 ssh 会话。</translation>
    </message>
    <message>
        <source>The command line does without; windows need a session at a screen.</source>
        <translation>命令行不需要桌面；窗口需要屏幕前的会话。</translation>
    </message>
    <message>
        <source>X11</source>
        <translation>X11</translation>
    </message>
    <message>
        <source>Wayland</source>
        <translation>Wayland</translation>
    </message>
    <message>
        <source>Windows are shown by %1, on a desktop that does not say its name.</source>
        <translation>窗口由 %1 显示，桌面未报告名称。</translation>
    </message>
    <message>
        <source>Windows are shown by %1, on %2.</source>
        <translation>窗口由 %1 显示，桌面为 %2。</translation>
    </message>
    <message>
        <source>A program without windows cannot ask for the tray; the windows&apos; support file tells.</source>
        <translation>没有窗口的程序无法查询系统托盘；请看窗口程序生成的支持文件。</translation>
    </message>
    <message>
        <source>The desktop has a tray.</source>
        <translation>桌面有系统托盘。</translation>
    </message>
    <message>
        <source>The desktop has no tray to hide in.</source>
        <translation>桌面没有可供隐藏的系统托盘。</translation>
    </message>
    <message>
        <source>Start quorvel again to show a window that was closed, or quorvel -close to end it.</source>
        <translation>再次启动 quorvel 可显示已关闭的窗口，运行 quorvel -close 可退出。</translation>
    </message>
</context>
<context>
    <name>doctor::Examination</name>
    <message>
        <source>note</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>TROUBLE</source>
        <translation>故障</translation>
    </message>
    <message>
        <source>not looked at</source>
        <translation>未检查</translation>
    </message>
    <message>
        <source>good</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>The frame answers all the same.</source>
        <translation>触摸框仍然应答。</translation>
    </message>
    <message>
        <source>The frame at the serial port %1 does not need this.</source>
        <translation>串口 %1 上的触摸框不需要此项。</translation>
    </message>
</context>
<context>
    <name>doctor::SerialChecks</name>
    <message>
        <source>This user may open the serial port %1, and no other program uses it.</source>
        <translation>此用户可以打开串口 %1，且没有其他程序在使用。</translation>
    </message>
    <message>
        <source>There is no /sys here to see serial ports by.</source>
        <translation>此处没有 /sys，无法查看串口。</translation>
    </message>
    <message>
        <source>There are no serial ports; a frame on USB needs none.</source>
        <translation>没有串口；USB 触摸框不需要串口。</translation>
    </message>
    <message>
        <source>This user may open these serial ports: %1.</source>
        <translation>此用户可以打开这些串口：%1。</translation>
    </message>
    <message>
        <source>This user may not open these serial ports: %1. That matters only to a frame on one of them.</source>
        <translation>此用户无权打开这些串口：%1。这仅影响连接在其中某个串口上的触摸框。</translation>
    </message>
</context>
<context>
    <name>doctor::Settings</name>
    <message>
        <source>line %1: %2</source>
        <translation>第 %1 行：%2</translation>
    </message>
    <message>
        <source>There is no settings file %1 yet.</source>
        <translation>尚无设置文件 %1。</translation>
    </message>
    <message>
        <source>It is made when a window is used; until then the frame keeps its own gestures.</source>
        <translation>使用窗口时会自动生成；在此之前触摸框保持自身的手势设置。</translation>
    </message>
    <message>
        <source>There is no settings file %1, and none can be made.</source>
        <translation>没有设置文件 %1，也无法创建。</translation>
    </message>
    <message>
        <source>Make the folder %1, owned by this user.</source>
        <translation>请创建文件夹 %1，并归此用户所有。</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be read.</source>
        <translation>无法读取设置文件 %1。</translation>
    </message>
    <message>
        <source>See that it is a file, owned by this user, or move it away.</source>
        <translation>请确认它是归此用户所有的文件，或将其移走。</translation>
    </message>
    <message>
        <source>The settings file %1 is damaged (%2).</source>
        <translation>设置文件 %1 已损坏（%2）。</translation>
    </message>
    <message>
        <source>Open each settings window and choose OK, which writes the file anew, or move it away.</source>
        <translation>请打开每个设置窗口并选择“确定”以重写该文件，或将其移走。</translation>
    </message>
    <message>
        <source>The settings file %1 is not whole: it lacks values of %2.</source>
        <translation>设置文件 %1 不完整：缺少 %2 的值。</translation>
    </message>
    <message>
        <source>Open each settings window and choose OK. Gestures are not sent until the file names every one.</source>
        <translation>请打开每个设置窗口并选择“确定”。文件给出全部手势值之前不会发送手势设置。</translation>
    </message>
    <message>
        <source>The settings file %1 has values out of range: %2.</source>
        <translation>设置文件 %1 中有超出范围的值：%2。</translation>
    </message>
    <message>
        <source>Open the windows that show them and choose OK: the nearest that is possible counts until then.</source>
        <translation>请打开显示这些值的窗口并选择“确定”：在此之前以最接近的可用值为准。</translation>
    </message>
    <message>
        <source>The settings file %1 can be read, but not written.</source>
        <translation>设置文件 %1 可读取，但不可写入。</translation>
    </message>
    <message>
        <source>Give it to this user if settings are to be kept.</source>
        <translation>如需保存设置，请将其归此用户所有。</translation>
    </message>
    <message>
        <source>The settings file %1 is whole.</source>
        <translation>设置文件 %1 完整。</translation>
    </message>
</context>
<context>
    <name>doctor::UsbChecks</name>
    <message>
        <source>No touch frame is on USB.</source>
        <translation>USB 上没有触摸框。</translation>
    </message>
    <message>
        <source>No touch frame is on USB; these nodes are other makers&apos;: %1.</source>
        <translation>USB 上没有触摸框；这些设备节点属于其他厂商：%1。</translation>
    </message>
    <message>
        <source>Plug the frame in, or try another USB port and another cable. For a frame on a serial line choose its port: &quot;Connect&quot; in the menu of the window, or --port on the command line. If it is plugged in all the same, see whether this user may use it: quorvelctl doctor tells the rights.</source>
        <translation>请插入触摸框，或换一个 USB 接口和电缆。若触摸框接在串口上，请选择其端口：窗口菜单中的“连接”，或命令行的 --port。如果确已插好，请查看此用户是否有权使用：quorvelctl doctor 会说明权限。</translation>
    </message>
    <message>
        <source>The touch frame %1 on USB has not been set up by the kernel.</source>
        <translation>内核尚未配置 USB 上的触摸框 %1。</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, at another USB port if need be.</source>
        <translation>请拔下后重新插入，必要时换一个 USB 接口。</translation>
    </message>
    <message>
        <source>The touch frame %1 on USB has no node, since no driver uses it.</source>
        <translation>USB 上的触摸框 %1 没有设备节点，因为没有驱动使用它。</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, or write &quot;%1&quot; to /sys/bus/usb/drivers/usbhid/bind as root.</source>
        <translation>请拔下后重新插入，或以 root 身份将“%1”写入 /sys/bus/usb/drivers/usbhid/bind。</translation>
    </message>
    <message>
        <source>The touch frame %1 on USB has no node, since the driver %2 uses it instead of usbhid.</source>
        <translation>USB 上的触摸框 %1 没有设备节点，因为使用它的是驱动 %2 而不是 usbhid。</translation>
    </message>
    <message>
        <source>End the program that took the frame for that driver, such as a virtual machine, then plug the frame in again.</source>
        <translation>请结束为该驱动占用触摸框的程序（例如虚拟机），然后重新插入触摸框。</translation>
    </message>
    <message>
        <source>The driver usbhid uses the touch frame %1 on USB, but made no hiddev node for it.</source>
        <translation>驱动 usbhid 正在使用 USB 上的触摸框 %1，但没有为它创建 hiddev 节点。</translation>
    </message>
    <message>
        <source>Use a kernel with CONFIG_USB_HIDDEV, and unplug other devices if they have all 16 nodes.</source>
        <translation>请使用带 CONFIG_USB_HIDDEV 的内核；如果其他设备占满了 16 个节点，请将其拔下。</translation>
    </message>
    <message>
        <source>There is no /sys here to see the kernel by, as in some containers.</source>
        <translation>此处没有 /sys，无法查看内核，某些容器即是如此。</translation>
    </message>
    <message>
        <source>This kernel (%1) has no USB.</source>
        <translation>此内核（%1）没有 USB。</translation>
    </message>
    <message>
        <source>Use a machine or a kernel with USB, or a frame on a serial line.</source>
        <translation>请使用带 USB 的计算机或内核，或使用串口触摸框。</translation>
    </message>
    <message>
        <source>The kernel&apos;s driver usbhid is installed but not loaded.</source>
        <translation>内核驱动 usbhid 已安装但未加载。</translation>
    </message>
    <message>
        <source>Load it as root with &quot;modprobe usbhid&quot;, and look in /etc/modprobe.d for what keeps it out.</source>
        <translation>请以 root 身份用“modprobe usbhid”加载，并在 /etc/modprobe.d 中查看是什么阻止了它。</translation>
    </message>
    <message>
        <source>This kernel (%1) has no driver usbhid.</source>
        <translation>此内核（%1）没有驱动 usbhid。</translation>
    </message>
    <message>
        <source>Install the distribution&apos;s complete kernel: those for clouds leave this driver out.</source>
        <translation>请安装发行版的完整内核：云端内核不含此驱动。</translation>
    </message>
    <message>
        <source>This kernel (%1) was built without hiddev.</source>
        <translation>此内核（%1）构建时未包含 hiddev。</translation>
    </message>
    <message>
        <source>Use a kernel with CONFIG_USB_HIDDEV, as the distributions&apos; have it.</source>
        <translation>请使用带 CONFIG_USB_HIDDEV 的内核，各发行版的内核都有。</translation>
    </message>
    <message>
        <source>The kernel&apos;s driver usbhid is there.</source>
        <translation>内核驱动 usbhid 可用。</translation>
    </message>
    <message>
        <source>The kernel&apos;s driver usbhid is there, with hiddev.</source>
        <translation>内核驱动 usbhid 可用，并带有 hiddev。</translation>
    </message>
    <message>
        <source>No touch frame is at %1.</source>
        <translation>%1 处没有触摸框。</translation>
    </message>
    <message>
        <source>Plug the frame in, or name its own node.</source>
        <translation>请插入触摸框，或指定它自己的设备节点。</translation>
    </message>
    <message>
        <source>The kernel has the node %1 for the touch frame, but it is not in /dev.</source>
        <translation>内核有触摸框的设备节点 %1，但 /dev 中没有。</translation>
    </message>
    <message>
        <source>Give this container the device %1, or see that devtmpfs is mounted on /dev.</source>
        <translation>请将设备 %1 提供给此容器，或确认 devtmpfs 已挂载到 /dev。</translation>
    </message>
    <message numerus="yes">
        <source>There are %n touch frames on USB; %1 is the first.</source>
        <translation>
            <numerusform>USB 上有 %n 个触摸框；%1 是第一个。</numerusform>
        </translation>
    </message>
    <message>
        <source>Unplug the others, or name a node on the command line.</source>
        <translation>请拔下其他触摸框，或在命令行中指定节点。</translation>
    </message>
    <message>
        <source>The touch frame is at %1.</source>
        <translation>触摸框位于 %1。</translation>
    </message>
    <message>
        <source>There is no touch frame on USB.</source>
        <translation>USB 上没有触摸框。</translation>
    </message>
    <message>
        <source>It is %1:%2, release %3.</source>
        <translation>它是 %1:%2，版本 %3。</translation>
    </message>
    <message>
        <source>This product number is not a known one. If it does not answer, see whether it is a touch frame at all.</source>
        <translation>此产品编号未知。如果没有应答，请确认它是否真是触摸框。</translation>
    </message>
    <message>
        <source>There is no node to open.</source>
        <translation>没有可打开的设备节点。</translation>
    </message>
    <message>
        <source>It belongs to %1 and the group %2, with the mode %3.</source>
        <translation>它属于 %1 和 %2 组，权限为 %3。</translation>
    </message>
    <message>
        <source>This user may open %1.</source>
        <translation>此用户可以打开 %1。</translation>
    </message>
    <message>
        <source>There is no node to use.</source>
        <translation>没有可使用的设备节点。</translation>
    </message>
    <message>
        <source>This program uses it.</source>
        <translation>本程序正在使用它。</translation>
    </message>
    <message>
        <source>No other program uses it.</source>
        <translation>没有其他程序在使用它。</translation>
    </message>
    <message>
        <source>It is linked in a moment.</source>
        <translation>马上就会连接。</translation>
    </message>
</context>
<context>
    <name>lights</name>
    <message>
        <source>Lights of a touch frame</source>
        <translation>触摸框的灯</translation>
    </message>
    <message>
        <source>en</source>
        <translation>zh-CN</translation>
    </message>
    <message>
        <source>PASS</source>
        <translation>合格</translation>
    </message>
    <message>
        <source>SERVICE NEEDED</source>
        <translation>需要维护</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>设备</translation>
    </message>
    <message>
        <source>Identification</source>
        <translation>标识</translation>
    </message>
    <message>
        <source>Measured</source>
        <translation>测量时间</translation>
    </message>
    <message>
        <source>Lights</source>
        <translation>灯</translation>
    </message>
    <message>
        <source>%1 on X, %2 on Y</source>
        <translation>X 轴 %1 个，Y 轴 %2 个</translation>
    </message>
    <message>
        <source>Scans</source>
        <translation>扫描次数</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>程序</translation>
    </message>
    <message>
        <source>The frame</source>
        <translation>触摸框</translation>
    </message>
    <message>
        <source>Letters: w weak, d dead, n noisy, s saturated, o switched off. Dark strips: touches are missed; light ones: they jump. Bars outside: stretches with one thing wrong.</source>
        <translation>字母：w 弱，d 失效，n 噪声，s 饱和，o 已关闭。深色条带：触摸丢失；浅色条带：触摸跳动。外侧的条：存在同一问题的区段。</translation>
    </message>
    <message>
        <source>Solid: the level of each light. Dashed: that of a healthy one. Dotted: the lowest that works.</source>
        <translation>实线：每个灯的电平。虚线：正常灯的电平。点线：可工作的最低电平。</translation>
    </message>
    <message>
        <source>%1 to %2: %3. %4</source>
        <translation>%1 到 %2：%3。%4</translation>
    </message>
    <message>
        <source>%1: %2. %3</source>
        <translation>%1：%2。%3</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>检查结果</translation>
    </message>
    <message>
        <source>Nothing was found.</source>
        <translation>未发现问题。</translation>
    </message>
    <message>
        <source>Touches</source>
        <translation>触摸</translation>
    </message>
    <message>
        <source>Since it was in good order</source>
        <translation>与状态良好时相比</translation>
    </message>
    <message>
        <source>Compared with the measurement of %1.</source>
        <translation>与 %1 的测量相比。</translation>
    </message>
    <message>
        <source>All lights</source>
        <translation>所有灯</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>灯</translation>
    </message>
    <message>
        <source>Verdict</source>
        <translation>判定</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>电平</translation>
    </message>
    <message>
        <source>Healthy level</source>
        <translation>正常电平</translation>
    </message>
    <message>
        <source>Noise</source>
        <translation>噪声</translation>
    </message>
    <message>
        <source>Change, %</source>
        <translation>变化，%</translation>
    </message>
    <message>
        <source>The frame with its lights along the edges, and where touches go wrong on the screen</source>
        <translation>触摸框及其边缘的灯，以及屏幕上触摸出错的位置</translation>
    </message>
    <message>
        <source>Levels of the lights of X, and of healthy ones</source>
        <translation>X 轴各灯的电平与正常电平</translation>
    </message>
    <message>
        <source>Levels of the lights of Y, and of healthy ones</source>
        <translation>Y 轴各灯的电平与正常电平</translation>
    </message>
    <message>
        <source>Touches at lights %1 to %2 are missed.</source>
        <translation>灯 %1 到 %2 处的触摸会丢失。</translation>
    </message>
    <message>
        <source>Touches at lights %1 to %2 jump by up to %3 lights.</source>
        <translation>灯 %1 到 %2 处的触摸会跳动，最多 %3 个灯。</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the left are missed.</source>
        <translation>距左边 %1 到 %2 毫米处的触摸会丢失。</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the top are missed.</source>
        <translation>距上边 %1 到 %2 毫米处的触摸会丢失。</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the left jump by up to %3 mm.</source>
        <translation>距左边 %1 到 %2 毫米处的触摸会跳动，最多 %3 毫米。</translation>
    </message>
    <message>
        <source>Touches between %1 and %2 mm from the top jump by up to %3 mm.</source>
        <translation>距上边 %1 到 %2 毫米处的触摸会跳动，最多 %3 毫米。</translation>
    </message>
    <message>
        <source>Clean the upper and the lower edge between %1 and %2 mm from the left, then measure again.</source>
        <translation>请清洁距左边 %1 到 %2 毫米的上下边缘，然后重新测量。</translation>
    </message>
    <message>
        <source>Clean the left and the right edge between %1 and %2 mm from the top, then measure again.</source>
        <translation>请清洁距上边 %1 到 %2 毫米的左右边缘，然后重新测量。</translation>
    </message>
    <message>
        <source>Clean both edges along lights %1 to %2, then measure again.</source>
        <translation>请清洁灯 %1 到 %2 处的两侧边缘，然后重新测量。</translation>
    </message>
    <message>
        <source>Remove what stands before the screen between %1 and %2 mm from the left, then measure again.</source>
        <translation>请移开屏幕前距左边 %1 到 %2 毫米处的物体，然后重新测量。</translation>
    </message>
    <message>
        <source>Remove what stands before the screen between %1 and %2 mm from the top, then measure again.</source>
        <translation>请移开屏幕前距上边 %1 到 %2 毫米处的物体，然后重新测量。</translation>
    </message>
    <message>
        <source>Remove what stands before lights %1 to %2, then measure again.</source>
        <translation>请移开灯 %1 到 %2 前的物体，然后重新测量。</translation>
    </message>
    <message>
        <source>Align the upper or the lower bar between %1 and %2 mm from the left: its lights aim past each other more and more.</source>
        <translation>请校正距左边 %1 到 %2 毫米处的上灯条或下灯条：两侧的灯逐渐偏离对准。</translation>
    </message>
    <message>
        <source>Align the left or the right bar between %1 and %2 mm from the top: its lights aim past each other more and more.</source>
        <translation>请校正距上边 %1 到 %2 毫米处的左灯条或右灯条：两侧的灯逐渐偏离对准。</translation>
    </message>
    <message>
        <source>Align the bars along lights %1 to %2: they aim past each other more and more.</source>
        <translation>请校正灯 %1 到 %2 处的灯条：两侧的灯逐渐偏离对准。</translation>
    </message>
    <message>
        <source>Replace the board between %1 and %2 mm from the left, or see to its plug: all its lights fail alike.</source>
        <translation>请更换距左边 %1 到 %2 毫米处的电路板，或检查其插头：其上所有的灯同样失效。</translation>
    </message>
    <message>
        <source>Replace the board between %1 and %2 mm from the top, or see to its plug: all its lights fail alike.</source>
        <translation>请更换距上边 %1 到 %2 毫米处的电路板，或检查其插头：其上所有的灯同样失效。</translation>
    </message>
    <message>
        <source>Replace the board of lights %1 to %2, or see to its plug: all its lights fail alike.</source>
        <translation>请更换灯 %1 到 %2 的电路板，或检查其插头：其上所有的灯同样失效。</translation>
    </message>
    <message>
        <source>Watch light %1, %2 mm from the left: only a far higher gain makes up for its weakness.</source>
        <translation>请留意距左边 %2 毫米的灯 %1：只有远高于正常的增益才能弥补其衰弱。</translation>
    </message>
    <message>
        <source>Watch light %1, %2 mm from the top: only a far higher gain makes up for its weakness.</source>
        <translation>请留意距上边 %2 毫米的灯 %1：只有远高于正常的增益才能弥补其衰弱。</translation>
    </message>
    <message>
        <source>Watch light %1: only a far higher gain makes up for its weakness.</source>
        <translation>请留意灯 %1：只有远高于正常的增益才能弥补其衰弱。</translation>
    </message>
    <message>
        <source>Clean light %1, %2 mm from the left; if it stays weak, plan to replace its board.</source>
        <translation>请清洁距左边 %2 毫米的灯 %1；如果仍然偏弱，请安排更换其电路板。</translation>
    </message>
    <message>
        <source>Clean light %1, %2 mm from the top; if it stays weak, plan to replace its board.</source>
        <translation>请清洁距上边 %2 毫米的灯 %1；如果仍然偏弱，请安排更换其电路板。</translation>
    </message>
    <message>
        <source>Clean light %1; if it stays weak, plan to replace its board.</source>
        <translation>请清洁灯 %1；如果仍然偏弱，请安排更换其电路板。</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the left, is covered or switched off; if not, replace its board.</source>
        <translation>请检查距左边 %2 毫米的灯 %1 是否被遮挡或已关闭；如果不是，请更换其电路板。</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the top, is covered or switched off; if not, replace its board.</source>
        <translation>请检查距上边 %2 毫米的灯 %1 是否被遮挡或已关闭；如果不是，请更换其电路板。</translation>
    </message>
    <message>
        <source>See whether light %1 is covered or switched off; if not, replace its board.</source>
        <translation>请检查灯 %1 是否被遮挡或已关闭；如果不是，请更换其电路板。</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the left, is covered; if not, replace its board.</source>
        <translation>请检查距左边 %2 毫米的灯 %1 是否被遮挡；如果不是，请更换其电路板。</translation>
    </message>
    <message>
        <source>See whether light %1, %2 mm from the top, is covered; if not, replace its board.</source>
        <translation>请检查距上边 %2 毫米的灯 %1 是否被遮挡；如果不是，请更换其电路板。</translation>
    </message>
    <message>
        <source>See whether light %1 is covered; if not, replace its board.</source>
        <translation>请检查灯 %1 是否被遮挡；如果不是，请更换其电路板。</translation>
    </message>
    <message>
        <source>Look for a loose contact or a lamp that shines on light %1, %2 mm from the left.</source>
        <translation>请查找距左边 %2 毫米的灯 %1 是否接触不良，或有灯光照射到它。</translation>
    </message>
    <message>
        <source>Look for a loose contact or a lamp that shines on light %1, %2 mm from the top.</source>
        <translation>请查找距上边 %2 毫米的灯 %1 是否接触不良，或有灯光照射到它。</translation>
    </message>
    <message>
        <source>Look for a loose contact or a lamp that shines on light %1.</source>
        <translation>请查找灯 %1 是否接触不良，或有灯光照射到它。</translation>
    </message>
    <message>
        <source>Keep the sun and lamps off light %1, %2 mm from the left, or lower its gain.</source>
        <translation>请避免阳光和灯光照射距左边 %2 毫米的灯 %1，或降低其增益。</translation>
    </message>
    <message>
        <source>Keep the sun and lamps off light %1, %2 mm from the top, or lower its gain.</source>
        <translation>请避免阳光和灯光照射距上边 %2 毫米的灯 %1，或降低其增益。</translation>
    </message>
    <message>
        <source>Keep the sun and lamps off light %1, or lower its gain.</source>
        <translation>请避免阳光和灯光照射灯 %1，或降低其增益。</translation>
    </message>
    <message>
        <source>Switch light %1, %2 mm from the left, on again unless it was switched off on purpose.</source>
        <translation>请重新打开距左边 %2 毫米的灯 %1，除非它是有意关闭的。</translation>
    </message>
    <message>
        <source>Switch light %1, %2 mm from the top, on again unless it was switched off on purpose.</source>
        <translation>请重新打开距上边 %2 毫米的灯 %1，除非它是有意关闭的。</translation>
    </message>
    <message>
        <source>Switch light %1 on again unless it was switched off on purpose.</source>
        <translation>请重新打开灯 %1，除非它是有意关闭的。</translation>
    </message>
    <message>
        <source>healthy</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>weak</source>
        <translation>弱</translation>
    </message>
    <message>
        <source>dead</source>
        <translation>失效</translation>
    </message>
    <message>
        <source>noisy</source>
        <translation>噪声</translation>
    </message>
    <message>
        <source>saturated</source>
        <translation>饱和</translation>
    </message>
    <message>
        <source>switched off</source>
        <translation>已关闭</translation>
    </message>
    <message>
        <source>dirt</source>
        <translation>脏污</translation>
    </message>
    <message>
        <source>obstacle</source>
        <translation>障碍物</translation>
    </message>
    <message>
        <source>bar out of line</source>
        <translation>灯条偏移</translation>
    </message>
    <message>
        <source>broken board</source>
        <translation>电路板损坏</translation>
    </message>
    <message>
        <source>The weakest light is %1 at level %2; the measurements kept so far do not show when it falls below %3.</source>
        <translation>最弱的灯是 %1，电平为 %2；目前保存的测量还看不出它何时会降到 %3 以下。</translation>
    </message>
    <message>
        <source>The weakest light is %1 at level %2; it is expected to fall below %3 on %4, between %5 and %6 with a certainty of 95 %.</source>
        <translation>最弱的灯是 %1，电平为 %2；预计在 %4 降到 %3 以下，有 95 % 的把握在 %5 到 %6 之间。</translation>
    </message>
    <message>
        <source>%1: %2, level %3 where %4 is usual</source>
        <translation>%1：%2，电平 %3，通常为 %4</translation>
    </message>
    <message>
        <source>%1: %2, level %3 where %4 is usual, changed by %5 %</source>
        <translation>%1：%2，电平 %3，通常为 %4，变化 %5 %</translation>
    </message>
    <message>
        <source>The measurement</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>Touches at light %1 are missed.</source>
        <translation>灯 %1 处的触摸会丢失。</translation>
    </message>
    <message>
        <source>Touches at light %1 jump by up to %2 lights.</source>
        <translation>灯 %1 处的触摸会跳动，最多 %2 个灯。</translation>
    </message>
</context>
<context>
    <name>lights::History</name>
    <message>
        <source>The unit says nothing of itself: give it a name to remember it by.</source>
        <translation>该设备不报告自身信息：请为它取一个便于记录的名称。</translation>
    </message>
    <message>
        <source>The measurement has no date.</source>
        <translation>此次测量没有日期。</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>无法创建文件夹 %1。</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2.</source>
        <translation>无法写入 %1：%2。</translation>
    </message>
    <message>
        <source>%1: it has no date</source>
        <translation>%1：没有日期</translation>
    </message>
    <message>
        <source>%1: it is of another unit, %2 and not %3</source>
        <translation>%1：属于另一设备 %2，而不是 %3</translation>
    </message>
</context>
<context>
    <name>lights::Measuring</name>
    <message>
        <source>The touch frame says that it has no lights.</source>
        <translation>触摸框报告没有灯。</translation>
    </message>
    <message>
        <source>No answer from the touch frame</source>
        <translation>触摸框没有应答</translation>
    </message>
    <message>
        <source>The scan of X stays incomplete: %1 of %2 lights came.</source>
        <translation>X 轴扫描不完整：收到 %1 个灯，共 %2 个。</translation>
    </message>
    <message>
        <source>The scan of Y stays incomplete: %1 of %2 lights came.</source>
        <translation>Y 轴扫描不完整：收到 %1 个灯，共 %2 个。</translation>
    </message>
</context>
<context>
    <name>lights::ScanFile</name>
    <message>
        <source>too long for a line of a signal test&apos;s log</source>
        <translation>超过信号测试日志的行长度</translation>
    </message>
    <message>
        <source>it is empty</source>
        <translation>内容为空</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>第 %1 行：%2</translation>
    </message>
    <message>
        <source>not the title of a signal test&apos;s log: Date,Time,X000,...</source>
        <translation>不是信号测试日志的标题行：Date,Time,X000,...</translation>
    </message>
    <message>
        <source>no frame has more than %1 lights on %2</source>
        <translation>没有触摸框在 %2 轴上超过 %1 个灯</translation>
    </message>
    <message>
        <source>the level of light %1 is no number from 0 to %2</source>
        <translation>灯 %1 的电平不是 0 到 %2 的数</translation>
    </message>
    <message>
        <source>no measurement of lights: &quot;format&quot; has to be &quot;%1&quot;</source>
        <translation>不是灯的测量：“format”必须是“%1”</translation>
    </message>
    <message>
        <source>&quot;version&quot; has to be %1</source>
        <translation>“version”必须是 %1</translation>
    </message>
    <message>
        <source>&quot;date&quot; is no date such as 2026-01-31T12:00:00Z</source>
        <translation>“date”不是 2026-01-31T12:00:00Z 这样的日期</translation>
    </message>
    <message>
        <source>it has neither axis</source>
        <translation>两个轴都没有</translation>
    </message>
    <message>
        <source>&quot;lights&quot; of %1 has to be a whole number from 1 to %2</source>
        <translation>%1 的“lights”必须是 1 到 %2 的整数</translation>
    </message>
    <message>
        <source>%1 has no scans</source>
        <translation>%1 没有扫描</translation>
    </message>
    <message>
        <source>&quot;off&quot; of %1 names a light that is not there</source>
        <translation>%1 的“off”中有不存在的灯</translation>
    </message>
    <message>
        <source>&quot;pitch&quot; of %1 has to be millimetres above 0</source>
        <translation>%1 的“pitch”必须是大于 0 的毫米数</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of %2 has %3 numbers where there are %4 lights</source>
        <translation>%2 的“%1”有 %3 个数，而灯有 %4 个</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of %2 has to be numbers from %3 to %4</source>
        <translation>%2 的“%1”必须是 %3 到 %4 的数</translation>
    </message>
    <message>
        <source>%1 is no file</source>
        <translation>%1 不是文件</translation>
    </message>
    <message>
        <source>%1 does not exist</source>
        <translation>%1 不存在</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>无法读取 %1：%2</translation>
    </message>
    <message>
        <source>%1 is larger than %2 MiB</source>
        <translation>%1 大于 %2 MiB</translation>
    </message>
    <message>
        <source>damaged, at byte %1: %2</source>
        <translation>已损坏，位于第 %1 字节：%2</translation>
    </message>
    <message>
        <source>light %1 was never read</source>
        <translation>从未读取灯 %1</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>it has no scan</source>
        <translation>没有扫描</translation>
    </message>
</context>
<context>
    <name>lights::Thresholds</name>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>no JSON, at byte %1: %2</source>
        <translation>不是 JSON，位于第 %1 字节：%2</translation>
    </message>
    <message>
        <source>no file of thresholds: &quot;format&quot; has to be &quot;%1&quot;</source>
        <translation>不是阈值文件：“format”必须是“%1”</translation>
    </message>
    <message>
        <source>&quot;version&quot; has to be %1</source>
        <translation>“version”必须是 %1</translation>
    </message>
    <message>
        <source>there is no threshold &quot;%1&quot;</source>
        <translation>没有阈值“%1”</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has to be a whole number from %2 to %3</source>
        <translation>“%1”必须是 %2 到 %3 的整数</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has to be a number from %2 to %3</source>
        <translation>“%1”必须是 %2 到 %3 的数</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>无法读取 %1：%2</translation>
    </message>
    <message>
        <source>%1 is too large for a file of thresholds</source>
        <translation>%1 对阈值文件来说过大</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>There is no display to show windows on. Start this from a desktop, or set DISPLAY or WAYLAND_DISPLAY.</source>
        <translation>没有可显示窗口的显示器。请在桌面中启动，或设置 DISPLAY 或 WAYLAND_DISPLAY。</translation>
    </message>
    <message>
        <source>Quorvel runs already but does not answer. End it with &quot;pkill -KILL quorvel&quot; and start it again.</source>
        <translation>Quorvel 已在运行但没有响应。请用“pkill -KILL quorvel”结束后重新启动。</translation>
    </message>
    <message>
        <source>Quorvel runs already, and this start records nothing: choose &quot;Record...&quot; in the menu of its window.</source>
        <translation>Quorvel 已在运行，本次启动不会录制：请在其窗口的菜单中选择“录制...”。</translation>
    </message>
    <message>
        <source>Started hidden in the tray: the argument %1 asks for it.</source>
        <translation>已隐藏启动到系统托盘：这是参数 %1 的要求。</translation>
    </message>
</context>
<context>
    <name>outcome</name>
    <message>
        <source>Kept.</source>
        <translation>已保存。</translation>
    </message>
    <message>
        <source>Not kept: cannot write %1</source>
        <translation>未保存：无法写入 %1</translation>
    </message>
</context>
<context>
    <name>paper::Pdf</name>
    <message>
        <source>This is no report.</source>
        <translation>这不是报告。</translation>
    </message>
</context>
<context>
    <name>smoothing_dlg</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Smoothing</source>
        <translation>平滑</translation>
    </message>
    <message>
        <source>Use of smoothing on writing</source>
        <translation>书写时使用平滑</translation>
    </message>
    <message>
        <source>We strongly recommend that you use the smoothing mode, which will optimize the use of your experience, and almost no side effects.</source>
        <translation>强烈建议使用平滑模式：它能改善您的使用体验，而且几乎没有副作用。</translation>
    </message>
    <message>
        <source>Smoothing Level:</source>
        <translation>平滑级别：</translation>
    </message>
    <message>
        <source>Low smoothing level</source>
        <translation>低：平滑级别</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>低</translation>
    </message>
    <message>
        <source>Smoothing Level</source>
        <translation>平滑级别</translation>
    </message>
    <message>
        <source>High smoothing level</source>
        <translation>高：平滑级别</translation>
    </message>
    <message>
        <source>High</source>
        <translation>高</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>test_win</name>
    <message>
        <source>MalvoTools</source>
        <translation>MalvoTools</translation>
    </message>
    <message>
        <source>Signal test</source>
        <translation>信号测试</translation>
    </message>
    <message>
        <source>The signal level of every light of the X axis (green) and the Y axis (red), from 0 to 1100, between two dashed limits.</source>
        <translation>X 轴（绿色）和 Y 轴（红色）每个灯的信号电平，范围 0 到 1100，位于两条虚线界限之间。</translation>
    </message>
    <message>
        <source>Tests the X axis once</source>
        <translation>测试 X 轴一次</translation>
    </message>
    <message>
        <source>Once [X]</source>
        <translation>单次 [X]</translation>
    </message>
    <message>
        <source>Tests the Y axis once</source>
        <translation>测试 Y 轴一次</translation>
    </message>
    <message>
        <source>Once [Y]</source>
        <translation>单次 [Y]</translation>
    </message>
    <message>
        <source>All Test</source>
        <translation>全部测试</translation>
    </message>
    <message>
        <source>Closes the signal test</source>
        <translation>关闭信号测试</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Settings of the test</source>
        <translation>测试设置</translation>
    </message>
    <message>
        <source>Upper Limit:</source>
        <translation>上限：</translation>
    </message>
    <message>
        <source>Lower Limit:</source>
        <translation>下限：</translation>
    </message>
    <message>
        <source>Interval (s):</source>
        <translation>间隔（秒）：</translation>
    </message>
    <message>
        <source>AGC:</source>
        <translation>AGC：</translation>
    </message>
    <message>
        <source>Draws the signal curves</source>
        <translation>绘制信号曲线</translation>
    </message>
    <message>
        <source>ADC</source>
        <translation>ADC</translation>
    </message>
    <message>
        <source>Draws the AGC curves</source>
        <translation>绘制 AGC 曲线</translation>
    </message>
    <message>
        <source>AGC</source>
        <translation>AGC</translation>
    </message>
    <message>
        <source>Draws the ripple curves</source>
        <translation>绘制纹波曲线</translation>
    </message>
    <message>
        <source>Rippel</source>
        <translation>纹波</translation>
    </message>
    <message>
        <source>Fills in the default settings</source>
        <translation>填入默认设置</translation>
    </message>
    <message>
        <source>Defualt</source>
        <translation>默认</translation>
    </message>
    <message>
        <source>Touch Test</source>
        <translation>触摸测试</translation>
    </message>
    <message>
        <source>Multitouch View</source>
        <translation>多点视图</translation>
    </message>
    <message>
        <source>Data View</source>
        <translation>数据视图</translation>
    </message>
    <message>
        <source>Options...</source>
        <translation>选项...</translation>
    </message>
    <message>
        <source>AGC...</source>
        <translation>AGC...</translation>
    </message>
    <message>
        <source>X Data</source>
        <translation>X 数据</translation>
    </message>
    <message>
        <source>Y Data</source>
        <translation>Y 数据</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>范围</translation>
    </message>
    <message>
        <source>warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>False to open ResultX.csv.</source>
        <translation>无法打开 ResultX.csv。</translation>
    </message>
    <message>
        <source>&amp;Log to TestLog.csv</source>
        <translation>记录到 TestLog.csv(&amp;L)</translation>
    </message>
    <message>
        <source>Upper limit value less than lower limit value.</source>
        <translation>上限值小于下限值。</translation>
    </message>
    <message>
        <source>%1 enter a whole number from 0 to %2</source>
        <translation>%1请输入 0 到 %2 的整数</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>The test waits until the light setting is closed</source>
        <translation>测试等待灯设置窗口关闭</translation>
    </message>
    <message>
        <source>The test waits until the light check has ended</source>
        <translation>测试等待灯检查结束</translation>
    </message>
</context>
<context>
    <name>useradv_dlg</name>
    <message>
        <source>Advanced Setting</source>
        <translation>高级设置</translation>
    </message>
    <message>
        <source>Use your finger as an input device</source>
        <translation>用手指作为输入设备</translation>
    </message>
    <message>
        <source>Right-button setting</source>
        <translation>右键设置</translation>
    </message>
    <message>
        <source>Enable press and hold for right-button</source>
        <translation>启用长按作为右键</translation>
    </message>
    <message>
        <source>Duration:</source>
        <translation>时长：</translation>
    </message>
    <message>
        <source>Short duration</source>
        <translation>短：时长</translation>
    </message>
    <message>
        <source>Shortens press and hold by half a second</source>
        <translation>将长按时间缩短半秒</translation>
    </message>
    <message>
        <source>Short</source>
        <translation>短</translation>
    </message>
    <message>
        <source>Duration of press and hold</source>
        <translation>时长：长按</translation>
    </message>
    <message>
        <source>Long duration</source>
        <translation>长：时长</translation>
    </message>
    <message>
        <source>Lengthens press and hold by half a second</source>
        <translation>将长按时间延长半秒</translation>
    </message>
    <message>
        <source>Long</source>
        <translation>长</translation>
    </message>
    <message>
        <source>Spatial tolerance:</source>
        <translation>距离容差：</translation>
    </message>
    <message>
        <source>Small tolerance of press and hold</source>
        <translation>小：长按的容差</translation>
    </message>
    <message>
        <source>Allows less movement during press and hold</source>
        <translation>长按时允许的移动更小</translation>
    </message>
    <message>
        <source>Small</source>
        <translation>小</translation>
    </message>
    <message>
        <source>Spatial tolerance of press and hold</source>
        <translation>距离容差：长按</translation>
    </message>
    <message>
        <source>Large tolerance of press and hold</source>
        <translation>大：长按的容差</translation>
    </message>
    <message>
        <source>Allows more movement during press and hold</source>
        <translation>长按时允许的移动更大</translation>
    </message>
    <message>
        <source>Large</source>
        <translation>大</translation>
    </message>
    <message>
        <source>Double-click setting</source>
        <translation>双击设置</translation>
    </message>
    <message>
        <source>You must restart the computer to make double-click setting take effect.</source>
        <translation>必须重启计算机才能使双击设置生效。</translation>
    </message>
    <message>
        <source>Speed:</source>
        <translation>速度：</translation>
    </message>
    <message>
        <source>Slow double-click</source>
        <translation>慢：双击</translation>
    </message>
    <message>
        <source>Allows more time between the clicks</source>
        <translation>允许两次点击间隔更长</translation>
    </message>
    <message>
        <source>Slow</source>
        <translation>慢</translation>
    </message>
    <message>
        <source>Speed of double-click</source>
        <translation>速度：双击</translation>
    </message>
    <message>
        <source>Fast double-click</source>
        <translation>快：双击</translation>
    </message>
    <message>
        <source>Allows less time between the clicks</source>
        <translation>要求两次点击间隔更短</translation>
    </message>
    <message>
        <source>Fast</source>
        <translation>快</translation>
    </message>
    <message>
        <source>Small tolerance of double-click</source>
        <translation>小：双击的容差</translation>
    </message>
    <message>
        <source>Allows less distance between the clicks</source>
        <translation>允许两次点击的距离更小</translation>
    </message>
    <message>
        <source>Spatial tolerance of double-click</source>
        <translation>距离容差：双击</translation>
    </message>
    <message>
        <source>Large tolerance of double-click</source>
        <translation>大：双击的容差</translation>
    </message>
    <message>
        <source>Allows more distance between the clicks</source>
        <translation>允许两次点击的距离更大</translation>
    </message>
    <message>
        <source>Wheel setting</source>
        <translation>滚轮设置</translation>
    </message>
    <message>
        <source>Enable Use your finger for wheel</source>
        <translation>启用手指滚轮</translation>
    </message>
    <message>
        <source>Sensitivity:</source>
        <translation>灵敏度：</translation>
    </message>
    <message>
        <source>Low sensitivity</source>
        <translation>低：灵敏度</translation>
    </message>
    <message>
        <source>Makes the wheel less sensitive</source>
        <translation>降低滚轮灵敏度</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>低</translation>
    </message>
    <message>
        <source>Sensitivity of the wheel</source>
        <translation>灵敏度：滚轮</translation>
    </message>
    <message>
        <source>High sensitivity</source>
        <translation>高：灵敏度</translation>
    </message>
    <message>
        <source>Makes the wheel more sensitive</source>
        <translation>提高滚轮灵敏度</translation>
    </message>
    <message>
        <source>High</source>
        <translation>高</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>默认</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <comment>duration</comment>
        <translation>%1 毫秒</translation>
    </message>
    <message>
        <source>Kept, and sent to the touch frame.</source>
        <translation>已保存，并已发送到触摸框。</translation>
    </message>
    <message>
        <source>Sent. Not kept: cannot write %1</source>
        <translation>已发送。未保存：无法写入 %1</translation>
    </message>
    <message>
        <source>The settings are sent, but %1 cannot be written: they are not kept.</source>
        <translation>设置已发送，但无法写入 %1：未能保存。</translation>
    </message>
    <message>
        <source>Kept. Sent when a frame is connected by USB.</source>
        <translation>已保存。通过 USB 连接触摸框后将发送。</translation>
    </message>
    <message>
        <source>No touch frame is connected. The settings are kept and will be sent when one is connected by USB.</source>
        <translation>没有连接触摸框。设置已保存，通过 USB 连接后将发送。</translation>
    </message>
    <message>
        <source>No touch frame is connected, and %1 cannot be written: the settings are not kept.</source>
        <translation>没有连接触摸框，并且无法写入 %1：设置未能保存。</translation>
    </message>
</context>
</TS>
