#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later

DOCUMENTATION = r'''
module: quorvel_rotation
short_description: By how much an infrared touch frame turns what it reports
description:
  - Asks the frame how it is turned, and turns it if that is another way. The frame is asked again
    afterwards.
options:
  degrees: {description: The rotation that is wanted., type: int, choices: [0, 90, 180, 270], required: true}
  command: {description: The program quorvelctl., type: str, default: quorvelctl}
  usb: {description: The node of the frame; any if empty., type: str, default: ''}
  port: {description: The serial port of the frame; it is on USB if empty., type: str, default: ''}
  rate: {description: Bits per second on the serial port., type: int, default: 0}
  timeout: {description: Seconds that each answer may take., type: float, default: 3}
author: The Quorvel developers
'''

EXAMPLES = r'''
- quorvel_rotation:
    degrees: 90
'''

RETURN = r'''
degrees: {description: What the frame says., type: int, returned: success}
rc: {description: The exit code of quorvelctl., type: int, returned: failure}
cause: {description: 'What it is called, such as no-frame or in-use.', type: str, returned: failure}
unconfirmed: {description: What had been sent when it failed., type: str, returned: failure}
'''

from ansible.module_utils.basic import AnsibleModule
from ansible.module_utils.quorvelctl import FRAME, Refused, quorvelctl


def main():
    module = AnsibleModule(
        argument_spec=dict(FRAME, degrees=dict(type='int', choices=[0, 90, 180, 270], required=True)),
        supports_check_mode=True)
    wanted = module.params['degrees']
    try:
        before = quorvelctl(module, ['rotation', 'show'])['degrees']
        if before == wanted:
            module.exit_json(changed=False, degrees=before)
        if not module.check_mode:
            wanted = quorvelctl(module, ['rotation', 'set', str(wanted)])['degrees']
        module.exit_json(changed=True, degrees=wanted,
                         diff=dict(before=dict(degrees=before), after=dict(degrees=wanted)))
    except Refused as refused:
        module.fail_json(**refused.result)


if __name__ == '__main__':
    main()
