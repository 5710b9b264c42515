#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later

DOCUMENTATION = r'''
module: quorvel_gestures
short_description: How touches of an infrared touch frame become mouse actions
description:
  - Sends gestures to the frame and keeps them in the settings file of the user, if that file keeps
    others. A frame does not tell its gestures and forgets them with its power; the windowed program
    sends what the file keeps at every connection.
options:
  gestures:
    description:
      - Those that are wanted, by the names that C(quorvelctl gestures show --json) uses. What is not
        named stays as it is kept, or becomes the default where nothing is kept.
    type: dict
    required: true
  command: {description: The program quorvelctl., type: str, default: quorvelctl}
  usb: {description: The node of the frame; any if empty., type: str, default: ''}
  port: {description: The serial port of the frame; it is on USB if empty., type: str, default: ''}
  rate: {description: Bits per second on the serial port., type: int, default: 0}
  timeout: {description: Seconds that each answer may take., type: float, default: 3}
author: The Quorvel developers
'''

EXAMPLES = r'''
- quorvel_gestures:
    gestures: {right_button: true, hold_ms: 2000}
'''

RETURN = r'''
gestures: {description: What is kept now., type: dict, returned: success}
file: {description: The file that keeps them., type: str, returned: success}
rc: {description: The exit code of quorvelctl., type: int, returned: failure}
cause: {description: 'What it is called, such as no-frame or in-use.', type: str, returned: failure}
unconfirmed: {description: What had been sent when it failed., type: str, returned: failure}
'''

from ansible.module_utils.basic import AnsibleModule
from ansible.module_utils.quorvelctl import FRAME, Refused, quorvelctl

# By their names in documents; the option that sets each.
OPTIONS = dict(
    finger='--finger',
    right_button='--right-button',
    hold_ms='--hold-time',
    hold_range='--hold-range',
    wheel='--wheel',
    wheel_sensitivity='--wheel-sensitivity',
)


def word(value):
    return ('on' if value else 'off') if isinstance(value, bool) else str(value)


def main():
    values = dict((name, dict(type='bool' if name in ('finger', 'right_button', 'wheel') else 'int'))
                  for name in OPTIONS)
    module = AnsibleModule(
        argument_spec=dict(FRAME, gestures=dict(type='dict', required=True, options=values)),
        supports_check_mode=True)
    wanted = dict((name, value) for name, value in module.params['gestures'].items()
                  if value is not None)
    try:
        shown = quorvelctl(module, ['gestures', 'show'])
        before = shown['kept'] or {}
        if all(before.get(name) == value for name, value in wanted.items()):
            module.exit_json(changed=False, gestures=before, file=shown['file'])
        after = dict(before, **wanted)
        if not module.check_mode:
            words = ['gestures', 'set']
            for name, value in wanted.items():
                words += [OPTIONS[name], word(value)]
            said = quorvelctl(module, words)
            after = said['sent']
            if 'wheel_sensitivity' in wanted and not said['wheel_sensitivity_carried']:
                module.warn("A serial line does not carry the wheel's sensitivity.")
        module.exit_json(changed=True, gestures=after, file=shown['file'],
                         diff=dict(before=before, after=after))
    except Refused as refused:
        module.fail_json(**refused.result)


if __name__ == '__main__':
    main()
