// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// Settings files typed by hand, and what they say (see words.h).

// Another value in every field.
inline const char OtherFile[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<data>
    <easysetting>
        <ENVIRONMENT>Rain</ENVIRONMENT>
        <USE>Multipoint</USE>
    </easysetting>
    <setting>
        <ALL_EN>11</ALL_EN>
        <RB_EN>12</RB_EN>
        <RB_DURATION>13</RB_DURATION>
        <RB_RAN>14</RB_RAN>
        <DB_SPEED>15</DB_SPEED>
        <DB_RAN>16</DB_RAN>
        <WHEEL_EN>17</WHEEL_EN>
        <WHEEL_SEN>18</WHEEL_SEN>
    </setting>
    <smoothing>
        <SMO_EN>21</SMO_EN>
        <SMO_LV>22</SMO_LV>
    </smoothing>
    <connect>
        <CONNECT>31</CONNECT>
        <TUIO_EN>32</TUIO_EN>
        <OS_EN>33</OS_EN>
        <UARTPORT>ttyS4</UARTPORT>
        <BAUDRATE>19</BAUDRATE>
        <DATABITS>2</DATABITS>
        <FLOWCONTROL>1</FLOWCONTROL>
        <PARITY>4</PARITY>
        <STOPBITS>3</STOPBITS>
        <TIMEOUT>34</TIMEOUT>
    </connect>
</data>
)";
inline const QString OtherWords = QStringLiteral(
    "'Rain' 'Multipoint' / 11 12 13 14 15 16 17 18 / 21 22 / 31 32 33 'ttyS4' 19 2 4 3 1 34");

inline const char DefaultFile[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<data>
    <easysetting>
        <ENVIRONMENT>Indoor</ENVIRONMENT>
        <USE>Write</USE>
    </easysetting>
    <setting>
        <ALL_EN>1</ALL_EN>
        <RB_EN>1</RB_EN>
        <RB_DURATION>1500</RB_DURATION>
        <RB_RAN>3</RB_RAN>
        <DB_SPEED>600</DB_SPEED>
        <DB_RAN>30</DB_RAN>
        <WHEEL_EN>1</WHEEL_EN>
        <WHEEL_SEN>2</WHEEL_SEN>
    </setting>
    <smoothing>
        <SMO_EN>1</SMO_EN>
        <SMO_LV>5</SMO_LV>
    </smoothing>
    <connect>
        <CONNECT>1</CONNECT>
        <TUIO_EN>0</TUIO_EN>
        <OS_EN>1</OS_EN>
        <UARTPORT>COM1</UARTPORT>
        <BAUDRATE>12</BAUDRATE>
        <DATABITS>3</DATABITS>
        <FLOWCONTROL>0</FLOWCONTROL>
        <PARITY>0</PARITY>
        <STOPBITS>0</STOPBITS>
        <TIMEOUT>500</TIMEOUT>
    </connect>
</data>
)";
