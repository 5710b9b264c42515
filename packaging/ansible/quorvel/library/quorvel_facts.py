#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later

DOCUMENTATION = r'''
module: quorvel_facts
short_description: What an infrared touch frame is and which firmware it has
description:
  - Gathers the fact C(quorvel_frame), and never fails because of the frame. What keeps it from
    answering is part of the fact.
options:
  command: {description: The program quorvelctl., type: str, default: quorvelctl}
  usb: {description: The node of the frame; any if empty., type: str, default: ''}
  port: {description: The serial port of the frame; it is on USB if empty., type: str, default: ''}
  rate: {description: Bits per second on the serial port., type: int, default: 0}
  timeout: {description: Seconds that each answer may take., type: float, default: 3}
author: The Quorvel developers
'''

EXAMPLES = r'''
- quorvel_facts:
- ansible.builtin.debug:
    var: ansible_facts.quorvel_frame.firmware.revision
'''

RETURN = r'''
ansible_facts:
  description: The fact C(quorvel_frame) with C(answers); then C(generation), C(usb) and C(firmware) as
    C(quorvelctl versions --json) tells them, or C(problem) and C(cause).
  type: dict
  returned: always
'''

from ansible.module_utils.basic import AnsibleModule
from ansible.module_utils.quorvelctl import FRAME, Refused, quorvelctl


def main():
    module = AnsibleModule(argument_spec=FRAME, supports_check_mode=True)
    try:
        said = quorvelctl(module, ['versions'])
        fact = dict((name, said[name]) for name in ('generation', 'usb', 'firmware'))
        fact['answers'] = True
    except Refused as refused:
        fact = dict(answers=False, problem=refused.result['msg'], cause=refused.result['cause'])
    module.exit_json(changed=False, ansible_facts=dict(quorvel_frame=fact))


if __name__ == '__main__':
    main()
