-- The sample CRM's first items: what a small commercial office keeps about its customers.

insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (101, 21, 'Açúcar & Afeto Confeitaria', 'EMP-001', 7, 1, { ts '2008-01-01 08:00:00' }, 1, { ts '2008-02-01 08:00:00' }, 'Encomendas de festa às sextas.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (102, 21, 'Água Limpa Serviços de Saneamento', 'EMP-002', 7, 1, { ts '2008-04-06 09:13:07' }, 1, { ts '2008-06-12 11:17:11' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (103, 21, 'Almeida, Brandão e Filhos Ltda.', 'EMP-003', 7, 1, { ts '2008-07-11 10:26:14' }, 1, { ts '2008-10-23 14:34:22' }, 'Terceira geração no comando.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (104, 21, 'Boi na Brasa Churrascaria', 'EMP-004', 7, 1, { ts '2008-01-16 11:39:21' }, 1, { ts '2008-02-06 17:51:33' }, 'Fecha às segundas.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (105, 21, 'Café do Mirante', 'EMP-005', 7, 1, { ts '2008-04-21 12:52:28' }, 1, { ts '2008-06-17 10:08:44' }, 'Entrega até as 9h, pela rua de trás.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (106, 21, 'Casa d''Ouro Joalheria', 'EMP-006', 7, 1, { ts '2008-07-26 13:05:35' }, 1, { ts '2008-10-28 13:25:55' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (107, 21, 'Cerâmica São João', 'EMP-007', 7, 1, { ts '2008-01-03 14:18:42' }, 1, { ts '2008-02-11 16:42:06' }, 'Fornece também telhas esmaltadas.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (108, 21, 'Clínica Vida & Saúde', 'EMP-008', 7, 1, { ts '2008-04-08 15:31:49' }, 1, { ts '2008-06-22 09:59:17' }, 'Agendar visitas com a recepção.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (109, 21, 'Escola Pé de Moleque', 'EMP-009', 7, 1, { ts '2008-07-13 16:44:56' }, 1, { ts '2008-10-05 12:16:28' }, 'Férias em janeiro e julho.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (110, 21, 'Expresso Tietê Transportes', 'EMP-010', 7, 1, { ts '2008-01-18 17:57:03' }, 1, { ts '2008-02-16 15:33:39' }, 'Frota de 42 caminhões.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (111, 21, 'Farmácia Boa Esperança', 'EMP-011', 7, 1, { ts '2008-04-23 08:10:10' }, 1, { ts '2008-06-27 08:50:50' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (112, 21, 'Gráfica Três Irmãos', 'EMP-012', 7, 1, { ts '2008-07-28 09:23:17' }, 1, { ts '2008-10-10 11:07:01' }, 'Aceita arquivos até 17h.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (113, 21, 'Hotel Serra Azul', 'EMP-013', 7, 1, { ts '2008-01-05 10:36:24' }, 1, { ts '2008-02-21 14:24:12' }, 'Alta temporada de junho a agosto.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (114, 21, 'Laticínios Vale do Paraíba', 'EMP-014', 7, 1, { ts '2008-04-10 11:49:31' }, 1, { ts '2008-06-04 17:41:23' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (115, 21, 'Oficina Mecânica do Zé', 'EMP-015', 7, 1, { ts '2008-07-15 12:02:38' }, 1, { ts '2008-10-15 10:58:34' }, 'Prefere contato por telefone.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (116, 21, 'Pousada Maré Mansa', 'EMP-016', 7, 1, { ts '2008-01-20 13:15:45' }, 1, { ts '2008-02-26 13:15:45' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (117, 20, 'Atas de reunião de 2008', 'PAS-01', 7, 1, { ts '2008-04-25 14:28:52' }, 1, { ts '2008-06-09 16:32:56' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (118, 20, 'Comprovantes de entrega', 'PAS-02', 7, 1, { ts '2008-07-02 15:41:59' }, 1, { ts '2008-10-20 09:49:07' }, 'Guardar por cinco anos.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (119, 20, 'Contratos em vigor', 'PAS-03', 7, 1, { ts '2008-01-07 16:54:06' }, 1, { ts '2008-02-03 12:06:18' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (120, 20, 'Correspondência expedida', 'PAS-04', 7, 1, { ts '2008-04-12 17:07:13' }, 1, { ts '2008-06-14 15:23:29' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (121, 20, 'Fotos das visitas técnicas', 'PAS-05', 7, 1, { ts '2008-07-17 08:20:20' }, 1, { ts '2008-10-25 08:40:40' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (122, 20, 'Modelos de proposta', 'PAS-06', 7, 1, { ts '2008-01-22 09:33:27' }, 1, { ts '2008-02-08 11:57:51' }, 'Usar sempre a versão mais nova.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (123, 20, 'Notas fiscais do trimestre', 'PAS-07', 7, 1, { ts '2008-04-27 10:46:34' }, 1, { ts '2008-06-19 14:14:02' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (124, 22, 'Proposta: reforma da recepção da Clínica Vida & Saúde', 'PRO-2008/031', 7, 1, { ts '2008-07-04 11:59:41' }, 1, { ts '2008-10-02 17:31:13' }, 'Aguarda a aprovação do conselho.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (125, 22, 'Proposta: uniformes da Escola Pé de Moleque', 'PRO-2008/032', 7, 1, { ts '2008-01-09 12:12:48' }, 1, { ts '2008-02-13 10:48:24' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (126, 22, 'Proposta: frota nova do Expresso Tietê', 'PRO-2008/033', 7, 1, { ts '2008-04-14 13:25:55' }, 1, { ts '2008-06-24 13:05:35' }, 'Incluir manutenção por 24 meses.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (127, 22, 'Proposta: cardápios do Café do Mirante', 'PRO-2008/034', 7, 1, { ts '2008-07-19 14:38:02' }, 1, { ts '2008-10-07 16:22:46' }, 'Papel reciclado, 300 unidades.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (128, 22, 'Proposta: sinalização do Hotel Serra Azul', 'PRO-2008/035', 7, 1, { ts '2008-01-24 15:51:09' }, 1, { ts '2008-02-18 09:39:57' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (129, 22, 'Proposta: embalagens da Açúcar & Afeto', 'PRO-2008/036', 7, 1, { ts '2008-04-01 16:04:16' }, 1, { ts '2008-06-01 12:56:08' }, 'Desconto de 5% à vista.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (130, 23, 'Contrato de manutenção: Cerâmica São João', 'CON-0117', 7, 1, { ts '2008-07-06 17:17:23' }, 1, { ts '2008-10-12 15:13:19' }, 'Renova em março.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (131, 23, 'Contrato de fornecimento: Laticínios Vale do Paraíba', 'CON-0118', 7, 1, { ts '2008-01-11 08:30:30' }, 1, { ts '2008-02-23 08:30:30' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (132, 23, 'Contrato de hospedagem: Pousada Maré Mansa', 'CON-0119', 7, 1, { ts '2008-04-16 09:43:37' }, 1, { ts '2008-06-06 11:47:41' }, 'Reajuste anual pelo índice oficial.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (133, 23, 'Contrato de frete: Expresso Tietê', 'CON-0120', 7, 1, { ts '2008-07-21 10:56:44' }, 1, { ts '2008-10-17 14:04:52' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (134, 23, 'Contrato de impressão: Gráfica Três Irmãos', 'CON-0121', 7, 1, { ts '2008-01-26 11:09:51' }, 1, { ts '2008-02-28 17:21:03' }, 'Mínimo de 2.000 páginas ao mês.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (135, 24, 'Chamado: a impressora fiscal não liga', 'CHA-0502', 7, 1, { ts '2008-04-03 12:22:58' }, 1, { ts '2008-06-11 10:38:14' }, 'Trocar a fonte e testar.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (136, 24, 'Chamado: emissão de segunda via do boleto', 'CHA-0503', 7, 1, { ts '2008-07-08 13:35:05' }, 1, { ts '2008-10-22 13:55:25' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (137, 24, 'Chamado: dúvida sobre a fatura de outubro', 'CHA-0504', 7, 1, { ts '2008-01-13 14:48:12' }, 1, { ts '2008-02-05 16:12:36' }, 'Retornar a ligação à tarde.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (138, 24, 'Chamado: mudança de endereço de cobrança', 'CHA-0505', 7, 1, { ts '2008-04-18 15:01:19' }, 1, { ts '2008-06-16 09:29:47' }, '', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (139, 24, 'Chamado: treinamento de três usuários', 'CHA-0506', 7, 1, { ts '2008-07-23 16:14:26' }, 1, { ts '2008-10-27 12:46:58' }, 'Preferência por terça ou quinta.', 0);
insert into item (oid, cid, nome, codigo, rescopo, criadopor, criadoem, atualizadopor, atualizadoem, observacao, excluido)
  values (140, 24, 'Chamado: pedido de amostras de azulejo', 'CHA-0507', 7, 1, { ts '2008-01-28 17:27:33' }, 1, { ts '2008-02-10 15:03:09' }, '', 0);
